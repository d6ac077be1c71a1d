# What is skipped is not expanded: no expression in it runs, and no mistake in it is found.
if 0
    echo `nosuch()`
    nosuchcommand
    if `nosuch()`
    else if `nosuch()`
    endif
else if 1
    echo right         # expect: right
else if `nosuch()`
else `nosuch()`
endif `nosuch()`
# What decides or runs is.
if 0
else if `nosuch()`
endif `nosuch()`
if 1
endif `nosuch()`
# expect err: %s (15): Expression error: Unknown function
# expect err: %s (16): Expression error: Unknown function
# expect err: %s (18): Expression error: Unknown function
# status: 1
