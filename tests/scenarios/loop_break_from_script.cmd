# break in a script that has no loop ends the loop that called it, once the script is at its end; continue likewise.
# file stop.cmd: break; echo behind break
# file stop.cmd: echo end of script
# file next.cmd: continue
for i = 1 to 3
    source next.cmd
    echo never
end
for i = 1 to 3
    source stop.cmd
    echo never
end
# expect: behind break
# expect: end of script
echo $i                # expect: 1
