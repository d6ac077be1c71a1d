# The words of a foreach are those of its entry; empty ones are dropped, quoted ones keep their blanks.
# run: script -c stdin
set list = a b
foreach x ($list "" 'c d' "$list" `1+1`)
    set list = changed
    echo $x
end
# expect: a
# expect: b
# expect: c d
# expect: a b
# expect: 2
foreach x ( )
    echo never
end
foreach x ( $nosuch )
    echo never
end
foreach x ( 1 2 ) # a comment
    foreach y ( $x$x ')' )
        echo $y
    end
end
# expect: 11
# expect: )
# expect: 22
# expect: )
echo $x $y             # expect: 2 )
