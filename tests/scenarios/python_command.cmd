# The command python: usage, files with arguments, exceptions, sys.exit; the script goes on, the status is 0.
# file words.py: import sys
# file words.py: print(sys.argv, sys.path[0], __name__, __file__)
# file words.py: import beside
# file beside.py: print("beside", flush=False)
# file broken.py: x = 1
# file broken.py: y = = 2
echo 1; python -c 'print(2)'; echo 3   # expect: 1
# expect: 2
# expect: 3
python >& usage
python -c >>& usage
python -c 1 2 >>& usage
unix grep Invalid usage
# expect: %s (11): python:  Invalid usage
# expect: %s (12): python:  Invalid usage
# expect: %s (13): python:  Invalid usage
python words.py a -c "b c"
# expect: ['words.py', 'a', '-c', 'b c'] %d __main__ words.py
# expect: beside
python -c 'import sys; print(sys.argv, "%d" in sys.path, hasattr(sys.modules["__main__"], "__file__"))'
# expect: [''] False False
python broken.py
# expect err: %s (23): SyntaxError: invalid syntax (broken.py, line 2)
# expect err:   File "broken.py", line 2
# expect err:     y = = 2
# expect err:         ^
# expect err: SyntaxError: invalid syntax
# expect err: 
python missing.py
# expect err: %s (30): FileNotFoundError: [Errno 2] No such file or directory: 'missing.py'
# expect err: FileNotFoundError: [Errno 2] No such file or directory: 'missing.py'
# expect err: 
python -c 'def f(): raise KeyError("lamp")\nf()'
# expect err: %s (34): KeyError: 'lamp'
# expect err: Traceback (most recent call last):
# expect err:   File "<string>", line 2, in <module>
# expect err:   File "<string>", line 1, in f
# expect err: KeyError: 'lamp'
# expect err: 
python -c 'import atexit; atexit.register(print, "the end"); exit(3)'
python -c 'raise SystemExit("text")'
echo $status   # expect: 0
# expect: the end
# What files still hold is written at the end, though nobody has closed them.
python -c 'kept = open("kept", "w"); kept.write("text"); raw = open("raw", "wb"); raw.write(b"bytes")'
# expect file kept: text<no newline>
# expect file raw: bytes<no newline>
