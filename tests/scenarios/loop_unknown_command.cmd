# A command that cannot be found ends all scripts and leaves a pending break doubled; a loop at the console goes on.
# run: stdin
# file inner.cmd: for k = 1 to 3
# file inner.cmd: nosuch
# file inner.cmd: end
# file inner.cmd: echo never
for i = 1 to 2
    source inner.cmd
    echo $i
end
# expect: 1
# expect: 2
# expect err: inner.cmd (2): Unknown command: nosuch<CR>
# expect err: inner.cmd (2): Unknown command: nosuch<CR>
