lamp hall white
# An application that is started for a port gets its number as last word, and the port closes with it.
openport -a -p -r 'sh party.sh' > port.txt
lamps
undo
lamps
undo
undo
redo
redo
redo
lamps
