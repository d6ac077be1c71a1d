# Expressions run commands, and take their output, their errors or both as one line.
# file inner.cmd: echo inner `$x + 1`
# file inner.cmd: set -l x = `$x * 2`
# file inner.cmd: echo x is $x
# file looks: 
set x = 4
echo "<`execute('echo a; echo b')`>"                    # expect: <a b>
echo "<`run(\"echo $x\")`>"                             # expect: <4>
echo "<`execute('endif')`|`executee('endif')`>"
# expect: <|%s (9): Syntax Error:  endif without matching if>
echo "<`executeb('echo out')`|`runb('echo x; endif')`|`runb('endif')`>"
# expect: <out|x  ~~~~ %s (11): Syntax Error:  endif without matching if| ~~~~ %s (11): Syntax Error:  endif without matching if>
# The command of an expression may source a script whose lines hold expressions.
echo "<`execute('source inner.cmd')`>" $x `$x`          # expect: <inner 5 x is 8> 4 4
echo `execute('echo \`execute("echo two") + 1\`')` end   # expect: two1 end
# Its failures are its own.
echo "<`execute('echo \`1 / 0\` in')`>"                 # expect: <in>
echo "<`executee('echo \`1 / 0\` in')`>"
# expect: <%s (18): Expression error: Division by zero>
echo $status                                            # expect: 0
# An earlier failure of the statement is still told.
echo `nosuch` "`execute('echo in')`"
# expect: in
# expect err: %s (22): Expression error: Unknown variable
echo `isovariable("x")` `isovariable("HOME")` `isvariable("HOME")` `isvariable("no_such")`   # expect: 1 0 1 0
echo `findfile("looks")` `findfile("no such")`          # expect: %d/looks no such
echo "`findfiles('looks', ':')`" "[`findfiles('no such', ':')`]"   # expect: %d/looks []
# A runaway ends with a message.
alias x 'echo `execute("x")`'
x
# expect:
# expect err: %s (30): Expression error: Nesting too deep
echo after $status                                      # expect: after 1
