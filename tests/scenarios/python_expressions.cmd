# Python in expressions: texts, numbers, exceptions.
echo "<`pythonexprs('6*7')`|`pythonexprs('[1, 2]')`|`pythonexprs('None')`|`pythonexprs('')`|`pythonexprs('str()')`>"
# expect: <42|[1, 2]|None||>
echo "<`pythonexprf(' 1/4') * 4`|`pythonexprf('True')`|`pythonexprf('str(12)')`|`pythonexprf('')`|`pythonexprf('exit()')`>"
# expect: <1|1|0|0|0>
echo "`pythonexprf('1/0')`"   # expect: 0
# expect err: Error from pythonexprf:
# expect err: Traceback (most recent call last):
# expect err:   File "<string>", line 1, in <module>
# expect err: ZeroDivisionError: division by zero
# expect err: 
echo -n "`pythonexprs('chr(0)')`"   # expect: ValueError: embedded null character
echo -n "`pythonexprs('chr(0xdcff)')`"
# expect: UnicodeEncodeError: 'utf-8' codec can't encode character '\udcff' in position 0: surrogates not allowed
