# An expression that fails gives nothing, is told once with the statement's position, and stops nothing.
echo a `1 / 0` b "<`nosuch`>" `(1` c
# expect: a b <> c
# expect err: %s (2): Expression error: Division by zero
echo status $status                                     # expect: status 1
echo status $status                                     # expect: status 0
echo `(((1)` end                                        # expect: end
# expect err: %s (7): Expression error: Syntax error
set x = `nosuchfunction(1)`
# expect err: %s (9): Expression error: Unknown function
echo [$x] `abs(1, 2)` `$nosuch`                         # expect: []
# expect err: %s (11): Expression error: Wrong number of arguments
echo `"text" * 2`                                       # expect:
# expect err: %s (13): Expression error: Wrong type of value
echo `item("1 2 x", 0)`                                 # expect:
# expect err: %s (15): Expression error: Wrong type of value
set brackets = `repeat("(", 10000)`
echo `length($brackets)`                                # expect: 10000
set big = `repeat("0123456789abcdef", 65536)`
echo `length($big)` `length("$big$big")`                # expect: 1048576 2097152
# A condition that fails to be computed is the failure of its statement.
if ( "`1 / 0`" == 1 ) then
    echo yes
else
    echo no
endif
# expect: no
# expect err: %s (22): Expression error: Division by zero
if ( 0 ) then
    echo `1 / 0`
endif
