# continue begins the next pass of the innermost loop, also out of an open if block.
for i = 1 to 2
    for k = 1 to 3
        if $k == 2
            continue and more words
        endif
        echo $i $k
    end
end
# expect: 1 1
# expect: 1 3
# expect: 2 1
# expect: 2 3
endif
# expect err: %s (14): Syntax Error:  endif without matching if
continue
# expect err: %s (16): Error:  continue outside of loop construct
