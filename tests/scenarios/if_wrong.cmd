# Wrong conditions and unmatched words are reported with their position, and the script goes on.
if
    echo runs          # expect: runs
endif
if 1 2
    echo runs too      # expect: runs too
endif
if ( 1
endif
if 1 then 2
endif
if 0
else if 1 ==
    echo skipped
else
    echo else          # expect: else
endif
endif
else
if 0
    if
    endif
    if 1 2 3
    else if 1 ==
    endif
endif
# expect err: %s (2): Invalid if syntax
# expect err: %s (5): Invalid if syntax
# expect err: %s (8): Invalid if syntax
# expect err: %s (10): Invalid if syntax
# expect err: %s (13): Invalid if syntax
# expect err: %s (18): Syntax Error:  endif without matching if
# expect err: %s (19): Syntax Error:  else without matching if
# expect err: %s (21): Invalid if syntax
