#!/usr/bin/env bash
# Runs a Windows program of either bitness in the project's private prefix and passes its exit code on.
# usage: tools/wine.sh PROGRAM [ARGUMENTS]   (KESTREL_WINEPREFIX names another prefix than build/wine,
# KESTREL_WINE another loader)
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source=tools/wine-env.sh
. "$ROOT/tools/wine-env.sh"

WINE64=/usr/lib/wine/wine64

# The machine that a program is made for, as its header says; empty for a name that is no program file here.
machine_of() {
    local header
    header="$(od -An -tu4 -j 60 -N 4 "$1" 2>/dev/null)" && [ -n "$header" ] || return 0
    od -An -tx2 -j $((header + 4)) -N 2 "$1" | tr -d ' '
}

# The 32-bit loader starts a 64-bit program through another one: slower, and a signal would reach that one alone.
loader_for() {
    if [ -x "$WINE64" ] && [ "$(machine_of "$1")" = 8664 ]; then echo "$WINE64"; else echo wine; fi
}

# The 64-bit loader's heap begins at a random place, now and then over the one page that every Windows program has at a
# fixed address, and then it ends with 1 and without a word: so its places are fixed where that is allowed.
start() {
    local fixed=()
    case "$1" in
    */wine64) if setarch -R true 2>/dev/null; then fixed=(setarch -R); fi ;;
    esac
    exec "${fixed[@]}" "$@"
}

[ $# -gt 0 ] || fail "usage: tools/wine.sh PROGRAM [ARGUMENTS]"
need_tools wine
[ -f "$PREFIX_STAMP" ] || "$ROOT/tools/prefix.sh" >&2 || exit 1
start "${KESTREL_WINE:-$(loader_for "$1")}" "$@"
