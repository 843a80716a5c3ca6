#!/usr/bin/env bash
# Runs a Windows program of either bitness in the project's private prefix and passes its exit code on.
# usage: tools/wine.sh PROGRAM [ARGUMENTS]   (KESTREL_WINEPREFIX names another prefix than build/wine,
# KESTREL_WINE another loader)
#        tools/wine.sh --show PROGRAM   (prints the words that it runs in the place of PROGRAM, one a line: who starts a
# program again and again saves the time of these scripts)
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source=tools/wine-env.sh
. "$ROOT/tools/wine-env.sh"

WINE32=/usr/lib/wine/wine
WINE64=/usr/lib/wine/wine64

# The machine that a program is made for, as its header says; empty for a name that is no program file here.
machine_of() {
    local header
    header="$(od -An -tu4 -j 60 -N 4 "$1" 2>/dev/null)" && [ -n "$header" ] || return 0
    od -An -tx2 -j $((header + 4)) -N 2 "$1" | tr -d ' '
}

# The 32-bit loader starts a 64-bit program through another one: slower, and a signal would reach that one alone.
loader_for() {
    if [ -x "$WINE64" ] && [ "$(machine_of "$1")" = 8664 ]; then
        echo "$WINE64"
    elif [ -x "$WINE32" ]; then
        echo "$WINE32" # what "wine" itself becomes
    else
        echo wine
    fi
}

# The 64-bit loader's heap begins at a random place, now and then over the one page that every Windows program has at a
# fixed address, and then it ends with 1 and without a word: so its places are fixed where that is allowed.
set_words() {
    WORDS=("$1")
    case "$1" in
    */wine64) if setarch -R true 2>/dev/null; then WORDS=(setarch -R "$1"); fi ;;
    esac
}

show() {
    local variable
    printf '%s\n' env
    for variable in WINEPREFIX WINEARCH WINEDEBUG WINEDLLOVERRIDES; do printf '%s=%s\n' "$variable" "${!variable}"; done
    printf '%s\n' "${WORDS[@]}"
}

main() {
    local only_show=no
    if [ "${1:-}" = --show ]; then
        only_show=yes
        shift
    fi
    [ $# -gt 0 ] || fail "usage: tools/wine.sh [--show] PROGRAM [ARGUMENTS]"
    need_tools wine
    [ -f "$PREFIX_STAMP" ] || "$ROOT/tools/prefix.sh" >&2 || exit 1
    set_words "${KESTREL_WINE:-$(loader_for "$1")}"
    if [ "$only_show" = yes ]; then show; else exec "${WORDS[@]}" "$@"; fi
}

main "$@"
