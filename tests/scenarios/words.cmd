# How a statement falls into words.
set v = "two  words"
echo 'a  b' "c  d" e\ \ f     # expect: a  b c  d e  f
echo $v "$v" '$v' x$v"y"      # expect: two words two  words $v xtwo wordsy
echo ${v}x "${v}x" ${none:-other} $none end
# expect: two wordsx two  wordsx other end
echo "it's" 'say \'hi\'' 'back\\slash' "\$v \"q\" \\ \n"
# expect: it's say 'hi' back\slash $v "q" \ \n
echo \$v \"a\" \; \# $ a$ $1  # expect: $v "a" ; # $ a$ $1
echo `1 + 2` "`1 + 2`" '`1 + 2`' x`1 + 2`y
# expect: 3 3 `1 + 2` x3y
echo `"a  b"` "`"a  b"`"
# expect: a b a  b
echo a=b (c) d||e f!=g h!i j<=k l>=m n&&o
# expect: a = b ( c ) d || e f != g h!i j <= k l >= m n&&o
echo a"b"'c'd "" '' $none "$none" end
# expect: abcd    end
echo -n a; echo -- -n b; echo - -1 -n
# expect: a-n b
# expect: - -1 -n
echo "open quote; stays # open
# expect: open quote; stays # open
