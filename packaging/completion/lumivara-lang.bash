# The tools share one completion.
for _lumivara_file in "${BASH_SOURCE[0]%/*}"/lumivara-data{,.bash}; do
    # shellcheck disable=SC1090
    [ -r "$_lumivara_file" ] && . "$_lumivara_file"
done
unset _lumivara_file
