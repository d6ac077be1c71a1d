# The condition of a while follows its body; a wrong one ends the loop like a false one, and without a word.
# run: script -c stdin
set i = 0
while $i<3
    set i = `$i + 1`
    echo -n $i ''
end
echo                   # expect: 1 2 3<20>
while 1
end
while 1 2
    echo never
end
while $nosuch == 1
    echo never
end
set text = a b
while `"$text" == "a b"`
    set text =
end
echo done              # expect: done
set op = ==
set n = 0
while $n $op 0
    set n = 1
end
echo $n                # expect: 1
