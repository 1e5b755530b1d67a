# bash completion for tindra-send

_tindra_send() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()
    case $before in
        --road) mapfile -t COMPREPLY < <(compgen -W "path memory start commandline open" -- "$word"); return ;;
        --editor) compopt -o filenames; mapfile -t COMPREPLY < <(compgen -c -- "$word"); return ;;
        --point) return ;;
    esac
    case $word in
        -*)
            mapfile -t COMPREPLY < <(compgen -W "--open --road --editor --point --show --hide --skip --autosave
                --save --close --kill --help" -- "$word")
            ;;
        *) compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    esac
}
complete -F _tindra_send tindra-send
