# A script that uses commands written in Python; see orvlang_commands.py.
echo '{ "rooms": [ { "name": "hall", "lamps": 3 }, { "name": "green room", "lamps": 12 } ] }' > rooms.json

jsonget rooms.json rooms.0.name rooms.1
jsonget -d none rooms.json rooms.1.colour
set lamps = `pythonexprf("sum(room['lamps'] for room in __import__('json').load(open('rooms.json'))['rooms'])")`
echo $lamps lamps in all

alias list 'echo room,lamps; echo hall,3; echo "green room,12"'
table -s , list
table -n list 'echo "quotes arrive" as they are'

# A mistake is shown, and the script continues.
jsonget nothing.json a
python -c 'raise ValueError("no such lamp")'
echo the end
