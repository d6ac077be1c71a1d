# A script that builds a table with arithmetic on variables and text functions.
set total = 0
foreach item ( 'apple 3 0.25' 'pear 12 0.4' 'fig 100 1.005' )
    set name = `word($item, 0)`
    set cost = `word($item, 1) * word($item, 2)`
    set total = `$total + $cost`
    echo "`padright($name, 8, '.')``padleft(fixed($cost, 2), 8)`"
end
# expect: apple...    0.75
# expect: pear....    4.80
# expect: fig.....  100.50
echo sum $total `if($total > 100, "over", "under")`     # expect: sum 106.05 over
set list = ""
for i = 1 to 3
    set list = "$list `$i ^ 2`"
end
echo `trim($list)` : `wordsort("b10 b9 a")` : `max(9, 4)`     # expect: 1 4 9 : a b9 b10 : 9
echo "`007`" "`007 + 1`" [`"$i" + "x"`]                 # expect: 007 8 [3x]
# A result splits into words outside quotes, and one that is empty is no word.
set words = `"a  b"`
echo "<$words>" `""` "`""`" end                         # expect: <a b>  end
