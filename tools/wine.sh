#!/usr/bin/env bash
# Runs a Windows program of either bitness in the project's private prefix and passes its exit code on.
# usage: tools/wine.sh PROGRAM [ARGUMENTS]   (KESTREL_WINEPREFIX names another prefix than build/wine,
# KESTREL_WINE another loader)
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source=tools/wine-env.sh
. "$ROOT/tools/wine-env.sh"

[ $# -gt 0 ] || fail "usage: tools/wine.sh PROGRAM [ARGUMENTS]"
need_tools wine
[ -f "$PREFIX_STAMP" ] || "$ROOT/tools/prefix.sh" >&2 || exit 1
exec "${KESTREL_WINE:-wine}" "$@"
