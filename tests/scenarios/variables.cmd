# `set` with a = behind the first word sets, otherwise it lists; each word behind the = counts.
set a = 1 2  "3  4"
set a b
# expect: a	= 1 2 3  4
# expect: b	undefined<20>
set x =y z
set y=z
set e =
set x y e
# expect: x	= y z
# expect: y	= z
# expect: e	=<20>
set a b = 1
# expect: a	= 1 2 3  4
# expect: b	undefined<20>
# expect: =	undefined<20>
# expect: 1	undefined<20>
set a-b = 1              # expect err: %s (%n): Invalid variable name (a-b)
set 1a = 1               # expect err: %s (%n): Invalid variable name (1a)
set FRAME = 1            # expect err: %s (%n): Invalid variable name (FRAME)
set -u a b a-b
set a                    # expect: a	undefined<20>
setenv -p x = 1          # expect err: %s (%n): Invalid option for command
