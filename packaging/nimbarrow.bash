# Completion of nimbarrow for bash.
_nimbarrow()
{
    local words=
    # Only one thing can be asked for.
    case $COMP_CWORD,${COMP_WORDS[1]} in
        1,*) words='--help --version --toggle --notch --doctor --quit' ;;
        2,--notch) words='200x32 none' ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "${COMP_WORDS[COMP_CWORD]}")
}
complete -F _nimbarrow nimbarrow
