# `listchooser` and `filechooser` ask for entries of a list and for a file name. Only the answer can be caught.
# stdin: 2, 0
# stdin: 1 9
# stdin: 1 x
# stdin: 1,,	1 ,0
# stdin:
# stdin: 3 0,1
# stdin: 2
# stdin: 0
# stdin: 0
# stdin: a b'$HOME
# stdin:
listchooser
listchooser -r
set picked = `execute('listchooser -d 1 -t Title -h help a b c')`
# expect: +++ Title +++
# expect: Choose from the list using a comma separated list
# expect: (help)
# expect: 0: a
# expect: 1: b
# expect: 2: c
echo $picked
# expect: enter your choice(s): 2 0
listchooser a b > picked.out; echo
# expect: Choose from the list using a comma separated list
# expect: 0: a
# expect: 1: b
# expect: enter your choice(s): invalid choice
# expect: enter your choice(s): invalid choice
# expect: enter your choice(s):<20>
listchooser -p a                              # an empty answer is one
# expect: Choose from the list using a comma separated list
# expect: 0: a
# expect: enter your choice(s):<20>
listchooser -p 'two words' "it's" c\\ '' > words.out; echo
# expect: Choose from the list using a comma separated list
# expect: 0: two words
# expect: 1: it's
# expect: 2: c\
# expect: 3:<20>
# expect: enter your choice(s):<20>
# One entry only, by `message`: what it shows stands for commas and empty entries, the answer is the entry.
listchooser -r -t 'A title' -h "it's (help)" x,y '' z\\ ">"
# expect: +++ A title +++
# expect: Choose one of the following
# expect: (it's (help))
# expect: 0: x y
# expect: 1: z\
# expect: 2: >
# expect: enter your choice: >
alias message 'echo not that'   # expect err: %s (%n): Warning:  alias for 'message' overrides internal command
listchooser -r -p x,y > one.out; echo
# expect: Choose one of the following
# expect: 0: x y
# expect: enter your choice:<20>
listchooser -r '$HOME`1/0`;#"' '> x'
# expect: Choose one of the following
# expect: 0: $HOME`1/0`;#"
# expect: 1: > x
# expect: enter your choice: $HOME`1/0`;#"
filechooser -d x -p y -s -t z not used
# expect: Enter filename: a b'$HOME
filechooser -n "Which one?" > name.out; echo
# expect: Which one?
# expect: Enter filename:<20>
# Without an answer there is no result.
filechooser >> one.out; echo
# expect: Enter filename:<20>
listchooser a >> one.out; echo
# expect: Choose from the list using a comma separated list
# expect: 0: a
# expect: enter your choice(s):<20>
echo "<`execute('listchooser -r a b')`>" $status
# expect: Choose one of the following
# expect: 0: a
# expect: 1: b
# expect: enter your choice: invalid choice
# expect: <> 0
# expect file picked.out: 1 1 0
# expect file words.out: '' 'two words' 'it\'s'
# expect file one.out: x,y
# expect file name.out:
