# What unix starts reads on where the language stopped, and the language behind that.
# run: stdin
unix 'head -n 1 > /dev/null'
this line is for head
echo on   # expect: on
