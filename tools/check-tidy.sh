#!/usr/bin/env bash
# Runs clang-tidy over every source of the project as its build compiles it: the portable ones as in native, those
# for Windows alone as in x86. A source is left out when nothing that its result depends on has changed since it was clean.
# usage: tools/check-tidy.sh
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

TIDY=clang-tidy-14
WORK="$BUILD/tidy"
# Marks of what was clean, shared by all clones of this user, as the compiler's cache is.
CLEAN="${XDG_CACHE_HOME:-${HOME:-$BUILD}/.cache}/kestrel-tidy"

# The options with which clang reads what is meant for the 32-bit mingw compiler: its target and its folders of headers.
mingw_options() {
    local folder
    printf '%s\n' --target=i686-w64-mingw32
    i686-w64-mingw32-g++-posix -E -v -x c++ /dev/null 2>&1 | sed -n '/^#include <...>/,/^End/s/^ //p' |
        while read -r folder; do
            case "$folder" in
            */../*) ;;                               # the system's own headers, seen from the compiler's folder
            */include | */include-fixed) continue ;; # the other compiler's intrinsics
            esac
            printf -- '-isystem%s\n' "$(realpath "$folder")"
        done
}

# Reads one file. usage: is_clean PRESET FILE
is_clean() {
    local options=() option
    while read -r option; do options+=("--extra-arg-before=$option"); done <"$WORK/options-$1"
    # How many warnings others have is told on the error output, whatever the end.
    "$TIDY" --quiet -p "$WORK/database-$1" "${options[@]}" "$2" 2> >(grep -v 'warnings generated')
}

# Checks the sources of a group, together first; where that finds anything, or they do not compile together, one by one.
# Leaves the marks that spare the clean ones the next time. usage: check_group PRESET GROUP NUMBER TOTAL
check_group() {
    local preset="$1" group="$WORK/groups/$2" source key output failed=0
    printf '[%s/%s] %s\n' "$3" "$4" "$(cut -f 1 "$group" | sed "s|^$ROOT/||" | paste -s -d ' ')"
    if is_clean "$preset" "$group.cpp" >/dev/null; then
        cut -f 2 "$group" | sed "s|^|$CLEAN/|" | xargs touch
        return
    fi
    while IFS=$'\t' read -r source key; do
        if output="$(is_clean "$preset" "$source")"; then
            touch "$CLEAN/$key"
        else
            printf '%s\n' "$output" >>"$WORK/findings/$3"
            failed=1
        fi
    done <"$group"
    return "$failed"
}

# Checks the groups on standard input, as many at a time as there are processors. usage: check_groups SOURCES UNMARKED
check_groups() {
    local work
    work="$(cat)"
    [ "$1" -gt 0 ] || fail "the compile databases hold no sources of the project"
    note "$1 sources, $2 of them changed"
    [ -n "$work" ] || return 0
    awk -F '\t' -v total="$(wc -l <<<"$work")" '{ print $0 "\t" NR "\t" total }' <<<"$work" | tr '\t' '\n' |
        xargs -r -d '\n' -n 4 -P "$JOBS" "$ROOT/tools/check-tidy.sh" --group || show_findings
}

# All together at the end, where whoever looks at the end of a long log finds them.
show_findings() {
    cat "$WORK"/findings/*
    fail "clang-tidy found what stands above"
}

main() {
    local preset counts
    if [ "${1:-}" = --group ]; then
        check_group "${@:2}"
        return
    fi
    need_tools "$TIDY" python3 i686-w64-mingw32-g++-posix
    for preset in native x86; do
        [ -f "$BUILD/$preset/compile_commands.json" ] || fail "build/$preset is not configured (tools/build.sh $preset)"
    done
    rm -rf "$WORK/findings"
    mkdir -p "$WORK/findings" "$CLEAN"
    find "$CLEAN" -type f -mtime +30 -delete
    : >"$WORK/options-native"
    mingw_options >"$WORK/options-x86"
    # What both builds compile is checked once, in the portable build.
    "$ROOT/tools/tidy-work.py" "$WORK" "$CLEAN" native x86 >"$WORK/list" || fail "the compile databases cannot be read"
    read -r -a counts < <(tail -n 1 "$WORK/list")
    check_groups "${counts[@]}" < <(sed '$d' "$WORK/list")
}

main "$@"
