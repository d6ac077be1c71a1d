# Safe mode holds for the commands that an expression runs.
# options: -s
echo "<`execute('echo fine')`|`executee('echo no > file')`>"
# expect: <fine|%s (3): Application doesn't support I/O redirection>
