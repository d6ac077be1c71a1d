# A redirection names the file of one statement: > makes it anew, >> goes on with it, a & takes the errors along.
# file talks.cmd: echo of the script
set file = "a file"
echo one > $nosuch"$file"
echo two >>"$file" three
# expect file a file: one
# expect file a file: two three
echo a\ > blank
# expect file blank: a<20>
> words echo a '>' b \> c
# expect file words: a > b > c
time "source nosuch; echo behind" >& both; echo console
# expect: console
source talks.cmd > unused; talks.cmd >& unused
# expect: of the script
# expect: of the script
echo a > ; echo status $status
# expect err: %s (17): Missing name for redirect
# expect: status 1
echo b > no/such/folder
# expect err: %s (20): Unable to redirect output to no/such/folder
# expect: b
echo c < words; echo status $status
# expect err: %s (23): Application doesn't support input redirection
# expect: status 1
nosuch >> errors; echo never
# expect err: %s (26): Unknown command: nosuch<CR>
# status: 1
