# A comment reaches to the end of its line, also behind a statement; inside quotes there is none.
echo a # b
echo c#d
echo "e # f" 'g # h'
# expect: a
# expect: c
# expect: e # f g # h
