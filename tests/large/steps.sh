# What the runs on large files share; the script that reads this sets "tool" and makes "folder" its own.

most_kilobytes=$((300 * 1024))
failed=0

# step NAME COMMAND…: runs it and tells its time, its largest memory, its exit code and the last line that it printed.
step() {
    local name=$1 code=0
    shift
    /usr/bin/time -o "$folder/measure" -f '%e %M' "$@" >"$folder/output" 2>&1 || code=$?
    read -r seconds kilobytes < <(tail -1 "$folder/measure")
    printf '%-18s %8.1f s %6d MB  exit %d  %s\n' "$name" "$seconds" $((kilobytes / 1024)) \
        "$code" "$(tail -1 "$folder/output" | cut -c1-70)"
    if [ "$code" -ne 0 ] || [ "$kilobytes" -gt "$most_kilobytes" ]; then failed=1; fi
}

# large_folder PARENT: a folder of the run's own, gone at its end.
large_folder() {
    folder=$(mktemp -d "$(realpath "$1")/lumivara-large.XXXXXX")
    trap 'rm -rf "$folder"' EXIT
    # What is checked is copied first, which may not go to a small disk.
    export TMPDIR=$folder
    cd "$folder"
}
