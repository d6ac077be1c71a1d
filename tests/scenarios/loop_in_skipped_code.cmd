# A loop in skipped code takes its lines up to its end and runs none, whatever stands in them.
if 0
    for i = 1 to `nosuch()`
        else
        endif
        while 1
            echo never
        end
    end
    for wrong
    end
else
    echo right         # expect: right
endif
# A pass that leaves an if open in a skipping state is the last one, and an inner loop does not run in it.
for i = 1 to 3
    if 0
    for k = 1 to 3
        echo never
    end
end
endif
echo $i                # expect: 1
