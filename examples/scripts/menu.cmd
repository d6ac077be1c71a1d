# A menu: `read` reads the next line that is typed, and the loop continues with it.
set total = 0
set choice =
while `"$choice" != "q"`
    echo "total $total; a) add  c) clear  q) quit"
    read choice amount
    if `"$choice" == "a"`
        set total = `$total + $amount`
    else if `"$choice" == "c"`
        set total = 0
    else if `"$choice" != "q"`
        echo "no such choice: $choice"
    endif
end
echo bye with $total
