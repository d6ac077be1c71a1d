# unix runs its words as a line of csh, waits, and stores how it ended.
# env: SEEN=before
set local = 1
setenv SEEN = after
unix echo "two  words" '$SEEN; test $?local = 0'
# expect: two words after
echo $status                         # expect: 0
unix exit 3; echo $status            # expect: 3
unix 'kill -9 $$'; echo $status      # expect: 137
unix; echo $status                   # expect: 0
unix nosuchprogram >& caught
# expect err: nosuchprogram: Command not found.
if $status != 0
    echo it failed                   # expect: it failed
endif
uls caught                           # expect: caught
unix test -s caught; echo $status    # expect: 1
echo 'before'; unix echo between; echo behind
# expect: before
# expect: between
# expect: behind
echo "<`execute('unix echo not caught')`>"
# expect: not caught
# expect: <>
setenv PATH = /nosuch
unix echo never; echo $status        # expect: 0
