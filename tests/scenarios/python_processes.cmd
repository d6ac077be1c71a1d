# Python code that forks: a child runs on its own, and a signal that asks it to end does so without a word.
# file fork.py: import os, signal, time
# file fork.py: ready, go = os.pipe()
# file fork.py: child = os.fork()
# file fork.py: if not child:
# file fork.py:     os.write(go, b"x")
# file fork.py:     time.sleep(1000)
# file fork.py: os.read(ready, 1)
# file fork.py: os.kill(child, signal.SIGTERM)
# file fork.py: print(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]))
python fork.py   # expect: -15
python -c 'if not os.fork(): os._exit(7)\nprint(os.waitstatus_to_exitcode(os.wait()[1]))'   # expect: 7
# What nobody reads any more is an error where it is written, not the end of the program.
python -c 'import socket\nhere, there = socket.socketpair(); there.close()\ntry: here.send(b"x")\nexcept BrokenPipeError: print("broken")'
# expect: broken
