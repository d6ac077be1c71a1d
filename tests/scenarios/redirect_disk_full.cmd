# A file that does not take what is written is told of, and the script goes on.
echo hello > /dev/full
echo $status
# expect err: %s (2): /dev/full: write failed
# expect: 1
