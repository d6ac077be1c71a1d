# A wrong first line of an inner loop is reported at each entry; that loop is skipped and the outer one goes on.
foreach i ( 1 2 )
    for k $i to 3
        echo inner
    end
    echo outer $i
end
# expect: outer 1
# expect: outer 2
# expect err: %s (3):  expression or syntax error
# expect err: %s (3):  expression or syntax error
