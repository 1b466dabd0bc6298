#compdef lumivara-data lumivara-lang lumivara-skins
# Completion for zsh. As for bash, verbs and options come from the tools' --help; other words are written here.

local tool=$words[1] verb=${words[2]-} thing= line
local -a found

_lumivara_read() {
    found=(${(f)"$("$@" 2>/dev/null | sed -n $script)"})
}

if (( CURRENT == 2 )); then
    local script='/^Verbs:/,/^$/s/^  \([a-z][a-z-]*\)  *\(.*\)/\1:\2/p'
    _lumivara_read $tool --help
    _describe verb found
    return
fi
[[ ${words[3]-} == (canon|dictionary|marks) ]] && thing=$words[3]
if [[ $PREFIX == -* ]]; then
    local script='s/^  \(-[a-z], \)\{0,1\}\(--[a-z][a-z-]*\)\( <[A-Z]*>\)\{0,1\}  *\(.*\)/\2:\4/p'
    _lumivara_read $tool $verb $thing --help
    _describe -o option found
    return
fi
case $words[CURRENT-1]:$verb-$thing in
--kind:*) compadd 1 2 3 4 5 6 7 8 ;;
--syn:*) compadd list forms ;;
--format:import-marks) compadd csv markdown ;;
--format:export-marks) compadd html markdown csv ;;
--format:import-canon) compadd segmented folder copy ;;
--format:export-canon) compadd folder segmented ;;
--format:*-dictionary) compadd stardict tsv markup ;;
--with:*) _files -/ ;;
*)
    if (( CURRENT == 3 )) && [[ $tool == *lumivara-data && $verb != words ]]; then
        [[ $verb == (backup|restore|sync) ]] && compadd marks || compadd canon dictionary marks
    fi
    _files
    ;;
esac
