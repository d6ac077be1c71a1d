# A for counts in 32-bit floats, from the count of its passes, and writes six digits.
# run: script -c stdin
for i = 0 to 1 step 0.1
    echo -n $i ''
end
echo                   # expect: 0 0.1 0.2 0.3 0.4 0.5 0.6 0.7 0.8 0.9 1<20>
for i=3 to 1 step -1; echo $i
end
# expect: 3
# expect: 2
# expect: 1
for i = 999999 to 1000001
    echo $i
end
# expect: 999999
# expect: 1e+06
# expect: 1e+06
for i = a to b
    echo $i            # expect: 0
end
for i = 1 to 2 by 5
    echo $i
end
# expect: 1
# expect: 2
set n = 2
for i = $n to `$n + 1`
    set n = 7
    echo $i
end
# expect: 2
# expect: 3
for i = 1 to 0
    echo never
end
echo $i                # expect: 3
