# A loop command behind a semicolon in a body, or out of an alias, takes the place of the loop that runs, with a
# warning. It has no lines: it is tested once and ends, and the script goes on.
alias again for k = 5 to 6
for i = 1 to 3
    echo pass; foreach k ( a b )   # expect: pass
end
echo $i $k             # expect: 1 a
for i = 1 to 3
    again
    echo never
end
echo $i $k             # expect: 1 5
# expect err: %s (5): Warning: bad loop building in CMD
# expect err: %s (9): Warning: bad loop building in CMD
