# `exit` ends its script and drops what is left of it; its code is the status that the caller sees.
# file three.cmd: exit 3; echo never
# file three.cmd: echo never
# file none.cmd: exit
# file none.cmd: echo never
source three.cmd
echo $status             # expect: 3
echo $status             # expect: 0
source none.cmd
echo $status             # expect: 0
source three.cmd; echo behind $status
# expect: behind 3
exit 4
echo never
# status: 4
