# A command written in Python gets its words and options; what run gives, and what goes wrong in it, shows where it should.
# options: -P show=ab:c:: -P give
# env: PYTHONPATH=%d
# file orvlang_commands.py: import sys
# file orvlang_commands.py: class show:
# file orvlang_commands.py:     run = staticmethod(lambda args, options: (f"{args} {options}\n", ""))
# file orvlang_commands.py: class give:
# file orvlang_commands.py:     run = staticmethod(lambda args, options: eval(args[1]))
show -a -b x y z
# expect: ['show', 'y', 'z'] {'a': [], 'b': ['x']}
sho 'a "quoted" word' "it's \$5" '' 'two\\nlines' -b
# expect: ['sho', 'a "quoted" word', "it's $5", '', 'two\nlines', '-b'] {}
show -b 1 -b 2 -b 3 -b 4 -b 5 -c 1 '' é
# expect: ['show', 'é'] {'b': ['1', '2', '3', '4'], 'c': ['1', '']}
show a > out   # expect file out: ['show', 'a'] {}
give "['out', 'err']"
# No line end is added: what is written next stands right behind.
# expect err: %s (16): err%s (20): Unknown return type from python wrapper function
give "('', '')"
give "'ab'"
give "[1, 2]"
# expect err: %s (21): Unknown return type from python wrapper function
give "['1', '2', '3']"
# expect err: %s (23): Internal error in command implementation:
# expect err: The command returned the wrong number of strings.
give "sys.exit()"
# expect err: %s (26): Internal error in command implementation:
# expect err: The command called sys.exit().
give "1/0" > none
# expect err: %s (29): ZeroDivisionError: division by zero
# expect err: Traceback (most recent call last):
# expect err:   File "<string>", line 1, in <module>
# expect err:   File "%d/orvlang_commands.py", line 5, in <lambda>
# expect err:     run = staticmethod(lambda args, options: eval(args[1]))
# expect err:                                              ^^^^^^^^^^^^^
# expect err:   File "<string>", line 1, in <module>
# expect err: ZeroDivisionError: division by zero
show a\\ 'b'
# expect err: %s (38): SyntaxError: unterminated string literal (detected at line 1) (<string>, line 1)
# expect err:   File "<string>", line 1
# expect err:     __import__('orvlang_commands').show.run(["show","a\","b"], {})
# expect err:                                                           ^
# expect err: SyntaxError: unterminated string literal (detected at line 1)
# A backslash in front of a double quote ends the literal, and the rest of the word is code.
show 'a\\"+chr(66)],{})#'   # expect: out['show', 'a\\B'] {}
