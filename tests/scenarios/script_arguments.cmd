# A script finds its words in arg0 and up; `shift` drops the first, and the inner script's are its own.
# args: one 'two' three
# file inner.cmd: echo $arg0 $arg1 of $argc
# file inner.cmd: shift
# file inner.cmd: echo $arg0 "<$arg1>" of $argc
echo $arg0 $arg1 "$arg2" $arg3 of $argc
# expect: %s one 'two' three of 4
source inner.cmd "a b"
# expect: inner.cmd a b of 2
# expect: a b <> of 1
inner.cmd c
# expect: inner.cmd c of 2
# expect: c <> of 1
shift; shift
echo $arg0 $arg1 "<$arg2>" of $argc
# expect: 'two' three <> of 2
shift; shift; echo "<$arg0>" of $argc
# expect: <> of 0
shift                    # expect err: %s (%n): Error: shift past the last argument
set -u argc
shift                    # expect err: %s (%n): Error: $argc not found
