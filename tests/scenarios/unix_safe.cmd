# Safe mode has no way to other programs, and leaves the files to the script.
# options: -s
# file old: x
# status: 1
umkdir new; urm old; uls   # expect: new
# expect: unix_safe.cmd
unix echo never
# expect err: %s (7): Command 'unix' is not a safe command and cannot be run<CR>
