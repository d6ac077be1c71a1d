# break ends as many loops as it says, from the inside out, closes the if blocks of the passes that it leaves, and lets
# the rest of its line run.
for i = 1 to 3
    if $i == 2
        if 1
            break; echo still here   # expect: 1
        endif
    endif
    echo $i
end
# expect: still here
for i = 1 to 3
    for k = 1 to 3
        echo $i $k     # expect: 1 1
        if $k == 2
            break 2
        endif
    end
end
# expect: 1 2
for i = 1 to 2
    break 0
    for k = 1 to 3
        break -5
        break two
        break 1 2
        echo never
    end
    echo $i
end
# expect: 1
# expect: 2
for i = 1 to 2
    for k = 1 to 2
        break 3
    end
end
break
echo $i $k             # expect: 1 1
endif
# expect err: %s (35): Warning:  not that many nested loops
# expect err: %s (38): Warning:  not that many nested loops
# expect err: %s (40): Syntax Error:  endif without matching if
