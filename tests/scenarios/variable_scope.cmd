# A local lives in its script and is seen by what that sources; a global call changes the local of its own script.
# file inner.cmd: echo $a $g
# file inner.cmd: set a = inner
# file inner.cmd: setenv g = changed
# file inner.cmd: setenv a = again
# file inner.cmd: set -p up = given
# file inner.cmd: set -u outer
# file inner.cmd: echo $a $g
# env: FROM_OUTSIDE=environment
set a = local
set outer = kept
setenv g = global
source inner.cmd
# expect: local global
# expect: again changed
echo $a $g $up $outer    # expect: local changed given kept
setenv a = 2
echo $a $FROM_OUTSIDE "<$missing>"
# expect: 2 environment <>
# A global that is new goes into the environment, and out of it again.
setenv FROM_OUTSIDE = ours
echo $FROM_OUTSIDE       # expect: ours
set -u FROM_OUTSIDE JOB
echo "<$FROM_OUTSIDE>" $JOB
# expect: <> %d
