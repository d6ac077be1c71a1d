# A read in a loop at the console, also in a script that the loop sources, takes the next line; then the loop goes on.
# run: stdin
# file ask.cmd: read answer
# file ask.cmd: set -p -l reply = $answer
for i = 1 to 2
    read line
    source ask.cmd
    echo $i "<$line>" "<$reply>"
end
a b; not run
c
  d
echo "not run"
# expect: 1 <a b; not run> <c>
# expect: 2 <d> <echo not run>
echo done              # expect: done
