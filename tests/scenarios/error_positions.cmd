# A message says where the statement stands that it is about, in the file that was sourced.
# file inner.cmd: # one
# file inner.cmd: set a-b = 1; echo here
# file inner.cmd: echo \
# file inner.cmd:     `1/0` behind
# file inner.cmd: set -x
# file ends.cmd: if 1
# file ends.cmd:     e never
alias twice 'shift; shift; source nosuch'
twice; inner.cmd; shift
# expect err: %s (10): Error: shift past the last argument
# expect err: %s (10): Can't open nosuch
# expect err: inner.cmd (2): Invalid variable name (a-b)
# expect: here
# expect: behind
# expect err: inner.cmd (4): Expression error: Division by zero
# expect err: inner.cmd (5): Invalid option for command
# expect err: %s (10): Error: shift past the last argument
source ends.cmd; echo never
# expect err: ends.cmd (2): Command 'e' not specific enough<CR>
echo never
# status: 1
