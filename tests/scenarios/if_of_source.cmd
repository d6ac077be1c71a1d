# A sourced script starts outside of the blocks of its caller, and its own go with it.
# file open.cmd: else
# file open.cmd: if 0
# file open.cmd: echo skipped
if 1
    source open.cmd
    echo right         # expect: right
else
    echo skipped
endif
endif
# expect err: open.cmd (1): Syntax Error:  else without matching if
# expect err: %s (11): Syntax Error:  endif without matching if
