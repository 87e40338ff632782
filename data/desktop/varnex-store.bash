# bash completion for varnex-store
_varnex_store()
{
    local cur prev words cword
    _init_completion || return

    local commands="init exists list demo import export help"
    # Position of the command: after "--profile FOLDER" when given.
    local first=1
    [[ ${words[1]} == --profile ]] && first=3

    if [[ $prev == --profile ]]; then
        _filedir -d
        return
    fi
    if (( cword < first )); then
        return
    fi
    if (( cword == first )); then
        if (( first == 1 )); then
            COMPREPLY=($(compgen -W "--profile $commands" -- "$cur"))
        else
            COMPREPLY=($(compgen -W "$commands" -- "$cur"))
        fi
        return
    fi
    case ${words[first]} in
        import|export)
            if (( cword == first + 1 )); then
                # The formats as the program itself lists them.
                local formats
                formats=$("${words[0]}" help 2>&1 | sed -n '/^Formate:/,/^$/s/^  \([a-z0-9]\+\).*/\1/p')
                COMPREPLY=($(compgen -W "$formats" -- "$cur"))
            elif (( cword == first + 2 )); then
                _filedir
            fi
            ;;
    esac
}
complete -F _varnex_store varnex-store
