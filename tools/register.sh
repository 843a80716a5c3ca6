#!/usr/bin/env bash
# Registers the built component, each bitness that is there, in the private Wine prefix.
# usage: tools/register.sh [--unregister]
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source=tools/wine-env.sh
. "$ROOT/tools/wine-env.sh"

main() {
    local dll options=(/s) done_any=no
    [ "${1:-}" = --unregister ] && options+=(/u)
    for dll in "$BUILD/x86/Kestrel.dll" "$BUILD/x64/Kestrel.dll"; do
        [ -f "$dll" ] || continue
        # regsvr32 hands a DLL of the other bitness on to its twin.
        "$ROOT/tools/wine.sh" regsvr32 "${options[@]}" "$(windows_path "$dll")" </dev/null ||
            fail "regsvr32 ${options[*]} refused ${dll#"$ROOT"/} (exit code $?)"
        done_any=yes
    done
    [ "$done_any" = yes ] || fail "neither build/x86/Kestrel.dll nor build/x64/Kestrel.dll has been built"
}

main "$@"
