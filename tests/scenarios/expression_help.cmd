# The help on the functions of expressions.
# file help/command.help: exhelp
# file help/command.help:     Tells of functions.
exhelp ceil nosuch
# expect: ceil(x)
# expect:     The least whole number not below x.
# expect: No expression function is called nosuch
exhelp -k COSINE
# expect: acos(x)                         The angle, in radians, whose cosine is x.
# expect: cos(x)                          The cosine of an angle in radians.
exhelp -k cosine isdigit
# expect: isdigit(text)
# expect:     1 when the text holds digits only, else 0.
exhelp run
# expect: run(command)
# expect:     The same as execute.
echo $status "`contains(execute('exhelp'), 'wordcount(text, [separators])')`"   # expect: 0 1
