# A wrong first line: the message, then the body runs once as it stands.
for i 1 to 3
    echo body          # expect: body
end
foreach x ( a
    echo body 2        # expect: body 2
end
while
    echo body 3        # expect: body 3
end
for a-b = 1 to 2
    echo pass          # expect: pass
end
# expect: pass
# expect err: %s (2):  expression or syntax error
# expect err: %s (4): Syntax Error:  end without matching while/for/do
# expect err: %s (5):  expression or syntax error
# expect err: %s (7): Syntax Error:  end without matching while/for/do
# expect err: %s (8):  expression or syntax error
# expect err: %s (10): Syntax Error:  end without matching while/for/do
# expect err: %s (13): Invalid variable name (a-b)
# expect err: %s (13): Invalid variable name (a-b)
