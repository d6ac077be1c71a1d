# One branch of an if block runs; the others are skipped, with all the blocks in them.
# run: script -c stdin
set n = 2
if ($n==1) then
    echo one
else if ($n == 2) then
    echo two           # expect: two
    if 0
        echo inner
    else
        echo inner else   # expect: inner else
    endif
else if $n == 2
    echo two again
else
    if 1
        echo else
    else
        echo else
    endif
endif
if 0
    echo a
else if
    echo plain else    # expect: plain else
endif ignored words
if 0
else if `execute("echo 1")`
    echo a command is asked    # expect: a command is asked
endif
if then
    echo an empty condition is false
endif
if ! ; echo a text is true; endif   # expect: a text is true
if -1
else; echo negative    # expect: negative
else; echo a second else ends the block
endif
