# The working directory, directories made and listed, files removed.
# file f2:
# file f10:
# file .hidden: x
# file sub/x1:
upwd ignored               # expect: %d
umkdir                     # expect err: %s (%n): No directory was specified.
umkdir a/b/c               # expect err: %s (%n): Could not create directory.
umkdir -p a/b/c
umkdir -p a/b/c/           # it is there: no failure
umkdir a b                 # expect err: %s (%n): Could not create directory.
umkdir d10 ignored
umkdir -p f2/x             # expect err: %s (%n): Could not create directory.
uls
# expect: a
# expect: d10
# expect: directories.cmd
# expect: f2
# expect: f10
# expect: sub
uls -d                     # expect: a
# expect: d10
# expect: sub
uls -f 'f*' ignored        # expect: f2
# expect: f10
uls -p .. -d -f            # expect err: %s (%n): -d and -f cannot both be specified.
uls '[.]*'
uls .*                     # expect: .hidden
uls -p $JOB/sub/ x?          # expect: x1
uls -p sub                 # expect: x1
uls -p nosuch

ucd a/b; upwd              # expect: %d/a/b
ucd nosuch; upwd           # expect: %d/a/b
ucd c; uls -p ../../.. f*; echo status $status
# expect: f2
# expect: f10
# expect: status 0
ucd a b >& usage
unix grep Invalid usage
# expect: %s (39): ucd:  Invalid usage
set -g ORP = $JOB/sub
ucd; upwd
# expect: %d/sub
# expect: %d/sub
set -g ORP = $JOB/nosuch
ucd; upwd
# expect: %d/nosuch
# expect: %d/sub
ucd ..

urm                        # expect err: %s (%n): No file specified for removal.
urm / //./.. f2
# expect err: %s (53): Could not remove root path /
# expect err: Could not remove root path //./..
urm a sub/x? nosuch f10    # expect err: %s (%n): Could not remove %d/a
urm '*dd*' 'su*/x1' ''     # expect err: %s (%n): Could not remove %d
uls -f                     # expect: directories.cmd
uls -d a*                  # expect: a
uls .h*                    # expect: .hidden
echo $status               # expect: 0
