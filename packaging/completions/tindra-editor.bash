# bash completion for tindra-editor

_tindra_editor() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    local commands="/path /point /memory /skip /show /hide /save /autosave /preference /updateprefvalue /about
        /close /kill"
    COMPREPLY=()
    case $before in
        /path) compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -- "$word"); return ;;
        /preference) mapfile -t COMPREPLY < <(compgen -W "0 1 2 3" -- "$word"); return ;;
        /point | /memory | /updateprefvalue) return ;;
    esac
    # An option counts only when it stands alone.
    [ "$COMP_CWORD" != 1 ] || commands="$commands --help --version"
    mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$word")
}
complete -F _tindra_editor tindra-editor
