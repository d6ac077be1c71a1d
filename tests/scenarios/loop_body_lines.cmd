# A body is stored as it stands: an end behind a semicolon does not close it, blank lines and comments are not stored,
# an abbreviated end closes, endif does not, and each pass expands anew.
foreach x ( 1 2 )

    # a comment; end
    set y = $x; echo $y; end
    if 1 == 1
        echo if
    endif
e
foreach x ( 3 )
    echo $x            # expect: 1
en
nosuch
# expect: if
# expect: 2
# expect: if
# expect: 3
# expect err: %s (6): Syntax Error:  end without matching while/for/do
# expect err: %s (6): Syntax Error:  end without matching while/for/do
# expect err: %s (14): Unknown command: nosuch<CR>
# status: 1
