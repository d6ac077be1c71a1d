# A local `noalias`, whatever its value, switches aliases off in its script and in what that sources.
# file inner.cmd: echo c
# file switch.cmd: set noalias = 0
# file switch.cmd: echo d
alias echo echo aliased  # expect err: %s (%n): Warning:  alias for 'echo' overrides internal command
echo a                   # expect: aliased a
set noalias =
echo b                   # expect: b
source inner.cmd         # expect: c
set -u noalias
source inner.cmd         # expect: aliased c
source switch.cmd        # expect: d
echo e                   # expect: aliased e
# A global one does nothing.
set -g noalias = 1
echo f                   # expect: aliased f
