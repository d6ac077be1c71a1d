# Arguments: the script's own name is arg0, and argc counts it.
echo $arg0 was given $argc words
shift
foreach colour ( $arg0 $arg1 $arg2 )
    if `length("$colour")` > 4
        echo $colour is long
    else
        echo $colour is short >> short.txt
    endif
end

# Backquotes hold an expression; a variable is local to its script, setenv makes a global one.
set sum = 0
for i = 1 to 10
    set sum = `$sum + $i * $i`
end
echo "the squares up to 10 add up to $sum; half of it is `$sum / 2`"

# Scripts call scripts; `source` may be left out.
echo 'echo hello $arg1, $sum from the caller' > greet.cmd
greet.cmd world

# An alias is replaced by its text; the names of commands can be abbreviated as long as they are unique.
alias say echo it says:
say 'single quotes keep $sum'; say done
nosuchcommand
echo an unknown command ends the script, so this is never seen
