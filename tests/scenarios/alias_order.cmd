# The statements of an alias run before what stands behind it, and each but the first can be an alias again.
alias two 'echo 1; echo 2'
alias nested 'echo a; two; echo b'
two; echo 3
# expect: 1
# expect: 2
# expect: 3
nested; echo c
# expect: a
# expect: 1
# expect: 2
# expect: b
# expect: c
alias comment 'echo kept # dropped'
comment; echo next
# expect: kept
# expect: next
alias first two
first                    # expect err: %s (%n): Unknown command: two<CR>
# status: 1
