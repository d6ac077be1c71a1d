# Code that takes away what Python and the bridge stand on harms itself alone: all that is needed is kept.
# file taken.py: import sys
# file taken.py: kept = sys.stdout
# file taken.py: for name in "__main__", "orvlang", "traceback":
# file taken.py:     sys.modules[name] = None
# file taken.py: del sys.modules["__main__"], sys.modules["orvlang"], __builtins__
python taken.py
python -c 'import gc, orvlang; gc.collect(); print(orvlang.__spec__.origin, __name__, sys.argv)'
# expect: built-in __main__ ['']
python -c 'raise ValueError("no traceback")'
# expect err: %s (10): ValueError: no traceback
# expect err: ValueError: no traceback
# expect err: 
python -c 'class Plain:\n  def write(self, text): kept.write(f"<{text}>")\nsys.stdout = Plain(); print(orvlang.execute("echo").status)'
# expect: <0><
# expect: ><no newline>
