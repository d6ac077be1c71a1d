# The primes below 100: each number is tried with the primes found so far.
set primes =
for n = 2 to 99
    set isPrime = 1
    foreach p ( $primes )
        if `$p * $p > $n`
            break
        endif
        if `$n % $p` == 0
            set isPrime = 0
            break
        endif
    end
    if $isPrime
        set primes = $primes $n
    endif
end
echo $primes
