# A command that an expression runs and that does not exist ends the script, without a word: its message is captured.
echo before                                             # expect: before
echo a "`executee('nosuchcommand')`" b
echo not reached
# status: 1
