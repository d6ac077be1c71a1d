# A table of squares and cubes, its columns flush right. An argument says how far it goes; without one, to 10.
set last = 10
if $argc > 1
    set last = $arg1
endif
for n = 1 to $last
    echo "`padleft($n, 4)``padleft($n ^ 2, 8)``padleft($n ^ 3, 12)`"
end
