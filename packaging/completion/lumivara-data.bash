# Completion of lumivara-data, lumivara-lang and lumivara-skins for bash. Verbs and options come from the tools' --help;
# the values after --format, --kind and --syn, and the words after a verb, are written here and must follow the tools.

_lumivara_verbs() {
    "$1" --help 2>/dev/null | sed -n '/^Verbs:/,/^$/s/^  \([a-z][a-z-]*\) .*/\1/p'
}

_lumivara_options() {
    "$@" --help 2>/dev/null | sed -n 's/^  \(-[a-z], \)\{0,1\}\(--[a-z][a-z-]*\).*/\2/p'
}

_lumivara() {
    local tool=$1 current=$2 previous=$3 verb=${COMP_WORDS[1]-} thing=
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W "$(_lumivara_verbs "$tool") --help" -- "$current")
        return
    fi
    case ${COMP_WORDS[2]-} in
    canon | dictionary | marks) thing=${COMP_WORDS[2]} ;;
    esac
    case $current in
    -*)
        # shellcheck disable=SC2086
        mapfile -t COMPREPLY < <(compgen -W "$(_lumivara_options "$tool" "$verb" $thing)" -- "$current")
        return
        ;;
    esac
    if [ "$previous" = --format ]; then
        case $verb-$thing in
        import-marks) mapfile -t COMPREPLY < <(compgen -W "csv markdown" -- "$current") ;;
        export-marks) mapfile -t COMPREPLY < <(compgen -W "html markdown csv" -- "$current") ;;
        import-canon) mapfile -t COMPREPLY < <(compgen -W "segmented folder copy" -- "$current") ;;
        export-canon) mapfile -t COMPREPLY < <(compgen -W "folder segmented" -- "$current") ;;
        *-dictionary) mapfile -t COMPREPLY < <(compgen -W "stardict tsv markup" -- "$current") ;;
        esac
        return
    fi
    if [ "$previous" = --kind ]; then
        mapfile -t COMPREPLY < <(compgen -W "1 2 3 4 5 6 7 8" -- "$current")
        return
    fi
    if [ "$previous" = --syn ]; then
        mapfile -t COMPREPLY < <(compgen -W "list forms" -- "$current")
        return
    fi
    if [ "$previous" = --with ]; then
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -d -- "$current")
        return
    fi
    if [ "$COMP_CWORD" -eq 2 ] && [ "${tool##*/}" = lumivara-data ]; then
        case $verb in
        backup | restore | sync) thing=marks ;;
        forget-me | update-list | words) ;;
        *) thing='canon dictionary marks' ;;
        esac
        mapfile -t COMPREPLY < <(compgen -W "$thing" -- "$current")
    fi
    compopt -o filenames
    while IFS= read -r file; do
        COMPREPLY+=("$file")
    done < <(compgen -f -- "$current")
}

complete -F _lumivara lumivara-data lumivara-lang lumivara-skins
