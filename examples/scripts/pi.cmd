# 100 000 passes with arithmetic: the area of a quarter of the unit circle, in strips.
set passes = 100000
set sum = 0
for i = 1 to $passes
    set x = `($i - 0.5) / $passes`
    set sum = `$sum + sqrt(1 - $x * $x)`
end
echo "pi is about `fixed(4 * $sum / $passes, 6)`"
