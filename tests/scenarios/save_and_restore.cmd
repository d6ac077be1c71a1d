# What `alias -s` and `set -s` write are statements that bring the same back.
alias ll ls -l
alias quote echo 'it'"'"'s "$HOME"; `1+1` # \\'
alias empty ''
alias -s
# expect: alias empty ''
# expect: alias ll 'ls -l'
# expect: alias quote 'echo it\'s "$HOME"; `1+1` # \'
alias -s > saved
alias -u quote ll empty
alias
source saved
alias ll                 # expect: ls -l

set -g text = "it's  \$1 \`2\` \"3\""
set -s > saved
setenv text = gone
source saved
echo "$text"             # expect: it's  $1 `2` "3"
