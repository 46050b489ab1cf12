# Completion of nimbarrow for bash.
_nimbarrow()
{
    local word=${COMP_WORDS[COMP_CWORD]}
    COMPREPLY=()
    # Only one thing can be asked for.
    [[ $COMP_CWORD -eq 1 ]] && mapfile -t COMPREPLY < <(compgen -W '--help --version --toggle --quit' -- "$word")
}
complete -F _nimbarrow nimbarrow
