# The line that begins a loop leaves 1 in status, the first line of the body still sees that; a test runs statements
# of its own only in for and foreach.
set -u nosuch
echo $status           # expect: 0
while $status == 1
    echo $status       # expect: 1
    break
end
foreach x ( a )
    echo $status       # expect: 0
end
