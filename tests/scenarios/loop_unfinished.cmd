# A script that ends inside a loop is told so, by its caller's position.
# file open.cmd: while 1
# file open.cmd: echo never
source open.cmd; echo next   # expect: next
# expect err: %s (4): Invalid loop nesting in open.cmd
