# Sourced scripts run before the rest of the line; one that cannot be opened is named unless -q is given.
# file inner.cmd: echo in
# file inner.cmd: source deeper.cmd; echo behind deeper
# file deeper.cmd: echo $arg0 $arg1
# file scripts/found.cmd: echo found
# file orp/scripts/there.cmd: echo there
source inner.cmd; echo out
# expect: in
# expect: deeper.cmd
# expect: behind deeper
# expect: out
source
source -q missing.cmd
echo $status             # expect: 0
source missing.cmd       # expect err: %s (%n): Can't open missing.cmd
source scripts           # expect err: %s (%n): Can't open scripts
source found.cmd         # expect: found
found.cmd                # expect: found
set -g ORP = $JOB/orp
there.cmd                # expect: there
# With -v each statement is shown before it runs, words expanded.
source -v deeper.cmd "a  b"
# expect: deeper.cmd (1): echo deeper.cmd a b
# expect: deeper.cmd a b
