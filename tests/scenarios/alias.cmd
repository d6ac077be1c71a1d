# An alias replaces the first word of a statement by its text, once.
alias say echo it says:
alias quote echo "it's"
say a; say 'b  c'
   say d
# expect: it says: a
# expect: it says: b  c
# expect: it says: d

# One word shows the text, no word lists all, an unknown name shows nothing.
alias say                # expect: echo it says:
alias missing
alias
# expect: quote	echo it's
# expect: say	echo it says:

# There is no = form. A command's name may be taken, with a warning; its text is not looked at for aliases again.
alias equal = b
alias equal              # expect: = b
alias echo echo loud     # expect err: %s (%n): Warning:  alias for 'echo' overrides internal command
echo a                   # expect: loud a
alias -u echo equal missing
echo b                   # expect: b

# The word itself is no alias, and an alias does not come out of a variable.
alias alias x            # expect err: %s (%n): Warning:  alias for 'alias' overrides internal command
alias -u alias
set word = say
$word a                  # expect err: %s (%n): Unknown command: say<CR>
# status: 1
