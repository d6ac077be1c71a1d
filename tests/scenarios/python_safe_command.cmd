# Safe mode refuses commands that are written in Python.
# options: -s -P show
# status: 1
show
# expect err: %s (4): Command 'show' is not a safe command and cannot be run<CR>
