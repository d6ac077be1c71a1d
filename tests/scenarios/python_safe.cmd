# Safe mode refuses everything that runs Python.
# options: -s -P show
# status: 1
echo "<`pythonexprs('1')`|`pythonexprf('1')`>"   # expect: <|>
# expect err: %s (4): Expression error: Not allowed in safe mode
python -c 'print(1)'
# expect err: %s (6): Command 'python' is not a safe command and cannot be run<CR>
