# A script brackets its channel changes in blocks that nest; one that is left open is told when the last script ends.
# file left.cmd: chblockbegin
# file left.cmd: source inner.cmd
# file inner.cmd: chblockbegin
# file inner.cmd: chblockend
# file inner.cmd: echo inner
# run: stdin
chblockbegin      # expect err: chblockbegin command can only be used in scripts.
chblockend        # expect err: chblockend command can only be used in scripts,
# expect err: or was run without a matching chblockbegin.
echo $status      # expect: 0
source left.cmd   # expect: inner
# expect err: Got chblockbegin without chblockend in left.cmd
source inner.cmd  # expect: inner
wrong.cmd
# file wrong.cmd: chblockbegin x >& usage
# file wrong.cmd: unix head -n 1 usage
# expect: wrong.cmd (1): chblockbegin:  Invalid usage
# file wrong.cmd: chblockbegin; chblockbegin; chblockend; chblockend x >& usage; chblockend; chblockend
# file wrong.cmd: unix head -n 1 usage
# expect err: wrong.cmd (3): chblockend command can only be used in scripts,
# expect err: or was run without a matching chblockbegin.
# expect: wrong.cmd (3): chblockend:  Invalid usage
