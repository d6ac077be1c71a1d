# `read` gives the words of the next line to its names, the last one all that is left; nothing in the line is expanded.
# stdin: one two  three
# stdin: one
# stdin:
# stdin: $HOME `1+1` ; 'a b' # c
# stdin: x y
# stdin: first
# stdin: armed last
read a b
echo "<$a> <$b>"         # expect: <one> <two three>
read a b
echo "<$a> <$b>"         # expect: <one> <>
read a b
echo "<$a> <$b>"         # expect: <> <>
read a b c d
echo "<$a> <$b> <$c> <$d>"
# expect: <$HOME> <`1+1`> <;> <a b # c>
read a-b c               # expect err: %s (%n): Invalid variable name: a-b
echo "<$c>"              # expect: <y>
read a; read b
echo "<$b>"              # expect: <armed last>
