# What Python prints and what the language writes come in order, on a pipe too; input is shared line by line.
# file nest.py: import orvlang, sys
# file nest.py: print("outer")
# file nest.py: r = orvlang.execute("python -c 'print(11)'; echo caught; job /; time echo")
# file nest.py: print("back", r.output.split()[0], r.status)
# file nest.py: print("line", input("? "), sys.stdin.readline(4), sys.stdin.readline(), end="|")
# stdin: first
# stdin: second line
# stdin: third
echo before; python nest.py; echo; read word; python -c 'import sys; print(sys.stdin.read() == "")'
# expect: before
# expect: outer
# expect: 11
# expect: back caught 0
# expect: ? line first seco nd line
# expect: |
# expect: True
echo $word   # expect: third
