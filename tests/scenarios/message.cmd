# `message` shows a text; with buttons it asks until one is chosen. Only the answer can be redirected.
# stdin:
# stdin: 0
# stdin: 2
# stdin: -1
# stdin: 1x
# stdin:  1
# stdin: 1
# stdin:
# stdin: +1
# stdin:
# stdin: 0
message -t Title -h "a help" hello   world > answer.out
# expect: +++ Title +++
# expect: hello world
# expect: (a help)
message -t '' -d 1 -p
message -b yes,no -d 1 ok?
# expect: ok?
# expect: 0: yes
# expect: 1: no
# expect: enter your choice (default 1): 1
message -b yes,,no, -d 1 > answer.out; echo
# expect: 0: yes
# expect: 1: no
# expect: enter your choice (default 1):<20>
message -b yes,no -p -d 1
# expect: 0: yes
# expect: 1: no
# expect: enter your choice (default 1): invalid choice
# expect: enter your choice (default 1): invalid choice
# expect: enter your choice (default 1): invalid choice
# expect: enter your choice (default 1): invalid choice
# expect: enter your choice (default 1): no
message -b 'two words,no' -d 2 -p
# expect: 0: two words
# expect: 1: no
# expect: enter your choice: invalid choice
# expect: enter your choice: no
message -b one -d -1 -p
# expect: 0: one
# expect: enter your choice: invalid choice
# expect: enter your choice: one
echo $status "`execute('message -b a,b x')`"
# expect: x
# expect: 0: a
# expect: 1: b
# expect: enter your choice: invalid choice
# expect: 0 -1
message -b , nothing to choose
# expect: nothing to choose
message -b a,b -p -d 0
# expect: 0: a
# expect: 1: b
# expect: enter your choice (default 0): invalid choice
# expect: -1
# expect file answer.out: 0
