#!/usr/bin/env bash
# Runs clang-tidy over every source of the project as its build compiles it: the portable ones as in native-clang, those
# for Windows alone as in x86. A source is left out when nothing that its result depends on has changed since it was clean.
# usage: tools/check-tidy.sh
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

TIDY=clang-tidy-14
WORK="$BUILD/tidy"
# Marks of what was clean, shared by all clones of this user, as the compiler's cache is.
CLEAN="${XDG_CACHE_HOME:-${HOME:-$BUILD}/.cache}/kestrel-tidy"

# "source TAB command" for each of the project's own sources in a compile database, each source once.
own_commands() {
    awk -v root="$ROOT/" '
        /^ *"command": / { command = $0 }
        /^ *"file": / {
            split($0, part, "\"")
            file = part[4]
            own = index(file, root) == 1 && substr(file, length(root) + 1) ~ /^(src|hosts|ledger|bench|tests)\/.*\.cpp$/
            if (own && !seen[file]++) print file "\t" command
        }' "$1"
}

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

# The compile database of a build without the options that only the compiler of Windows' builds knows. usage: readable PRESET
readable() {
    mkdir -p "$WORK/database-$1"
    sed -E 's/ -fno-(align-[a-z]+|reorder-blocks-and-partition)//g' "$BUILD/$1/compile_commands.json" \
        >"$WORK/database-$1/compile_commands.json"
}

# "source TAB dependency" for every file of the project that a source includes, as the compiler recorded it.
dependencies() {
    ninja -C "$BUILD/$1" -t deps | awk -v root="$ROOT/" -v build="$BUILD/$1/" '
        /^[^ ].*: #deps/ { source = ""; next }
        NF == 1 {
            path = $1
            # The compiler cache names files from the build folder, build/PRESET.
            if (index(path, "../../") == 1) path = root substr(path, 7)
            else if (path !~ /^\//) path = build path
            # clang names the lists of its sanitizers before the source.
            if (source == "" && index(path, root) == 1) source = path
            if (index(path, root) == 1) print source "\t" path
        }'
}

# "source TAB key" for the lines of own_commands on standard input; the key covers the text of the source and of the
# project's headers that it includes, the command, the configuration and clang-tidy itself. A source that the build has not
# compiled, so that its headers are not known, is left out. usage: keys PRESET
keys() {
    local preset="$1" configuration
    configuration="$({ "$TIDY" --version; find "$ROOT" -name .clang-tidy -not -path "$BUILD/*" -print0 | sort -z | xargs -0 cat; cat "$WORK/options-$preset"; } | sha256sum)"
    dependencies "$preset" | sort -u >"$WORK/dependencies"
    cut -f 2 "$WORK/dependencies" | sort -u | xargs -r -d '\n' sha256sum 2>/dev/null | sed 's/  /\t/' >"$WORK/sums" || true
    awk -F '\t' -v configuration="$configuration" -v root="$ROOT" '
        FILENAME ~ /sums$/ { sum[$2] = $1; next }
        FILENAME ~ /dependencies$/ { text[$1] = text[$1] sum[$2]; next }
        # A command is the same in every clone but for where that lies.
        $1 in text { gsub(root, "", $2); print $1 "\t" configuration $2 text[$1] }' "$WORK/sums" "$WORK/dependencies" - |
        while IFS=$'\t' read -r source text; do
            printf '%s\t%s\n' "$source" "$(sha256sum <<<"$text" | cut -c 1-40)"
        done
}

# Checks one source and, when it is clean, leaves the mark that spares it the next time.
# usage: check_one PRESET SOURCE KEY NUMBER TOTAL
check_one() {
    local preset="$1" source="$2" key="$3" options=() option output
    while read -r option; do options+=("--extra-arg-before=$option"); done <"$WORK/options-$preset"
    printf '[%s/%s] %s\n' "$4" "$5" "${source#"$ROOT"/}"
    if output="$("$TIDY" --quiet -p "$WORK/database-$preset" "${options[@]}" "$source" 2>"$WORK/errors.$$")"; then
        : >"$CLEAN/$key"
        rm -f "$WORK/errors.$$"
        return 0
    fi
    printf '%s\n' "$output"
    grep -v 'warnings generated' "$WORK/errors.$$" || true
    rm -f "$WORK/errors.$$"
    return 1
}

# The sources to check and their keys, one line "PRESET TAB SOURCE TAB KEY" each, the clean ones left out.
work_list() {
    local preset source key
    : >"$WORK/known"
    for preset in native-clang x86; do
        own_commands "$BUILD/$preset/compile_commands.json" >"$WORK/commands-$preset"
    done
    # What both builds compile is checked once, in the portable build.
    awk -F '\t' 'NR == FNR { portable[$1]; next } !($1 in portable)' "$WORK/commands-native-clang" "$WORK/commands-x86" \
        >"$WORK/commands-windows"
    mv "$WORK/commands-windows" "$WORK/commands-x86"
    for preset in native-clang x86; do
        keys "$preset" <"$WORK/commands-$preset" >"$WORK/keys"
        cut -f 1 "$WORK/keys" >>"$WORK/known"
        while IFS=$'\t' read -r source key; do
            [ -f "$CLEAN/$key" ] || printf '%s\t%s\t%s\n' "$preset" "$source" "$key"
        done <"$WORK/keys"
    done
}

main() {
    local total checked unknown preset
    if [ "${1:-}" = --one ]; then
        check_one "${@:2}"
        return
    fi
    need_tools "$TIDY" ninja i686-w64-mingw32-g++-posix
    for preset in native-clang x86; do
        [ -f "$BUILD/$preset/compile_commands.json" ] || fail "build/$preset is not configured (tools/build.sh $preset)"
    done
    mkdir -p "$WORK" "$CLEAN"
    for preset in native-clang x86; do readable "$preset"; done
    find "$CLEAN" -type f -mtime +30 -delete
    : >"$WORK/options-native-clang"
    mingw_options >"$WORK/options-x86"
    work_list >"$WORK/list"
    unknown="$(cut -f 1 "$WORK/commands-native-clang" "$WORK/commands-x86" | grep -vxF -f "$WORK/known" || true)"
    [ -z "$unknown" ] || fail "not compiled yet, so not checked: $(tr '\n' ' ' <<<"${unknown//"$ROOT"\//}")"
    checked="$(cat "$WORK/commands-native-clang" "$WORK/commands-x86" | wc -l)"
    [ "$checked" -gt 0 ] || fail "the compile databases hold no sources of the project"
    total="$(wc -l <"$WORK/list")"
    note "$checked sources, $total of them changed"
    awk -F '\t' -v total="$total" '{ print $0 "\t" NR "\t" total }' "$WORK/list" | tr '\t' '\n' |
        xargs -r -d '\n' -n 5 -P "$JOBS" "$ROOT/tools/check-tidy.sh" --one
}

main "$@"
