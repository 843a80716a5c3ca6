#!/usr/bin/env bash
# Fails when a built DLL imports anything but DLLs of Windows that no file in a host's folder can stand in for, or exports
# other names than a COM server's.
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

# Windows takes the first seven from its own folder, whatever lies beside the program. For comctl32 the manifest inside the
# library says where. Any other is looked for in the host's folder first: platform/SystemLibrary.h loads it from the right one.
SYSTEM_DLLS='^(advapi32|gdi32|kernel32|msvcrt|ole32|oleaut32|user32|comctl32)\.dll$'
EXPORTS='DllCanUnloadNow DllGetClassObject DllInstall DllRegisterServer DllUnregisterServer'

# Lower-case names of the DLLs that FILE imports from.
imports_of() { objdump -p "$1" | sed -nE 's/^\s*DLL Name: (.*)$/\L\1/p' | sort -u; }

# The exported names of FILE, sorted, in one line.
exports_of() {
    objdump -p "$1" | sed -nE '/\[Ordinal\/Name Pointer\] Table/,/^$/s/^\s*\[ *[0-9]+\] (\+base\[ *[0-9]+\] +[0-9a-f]+ )?(.*)$/\2/p' |
        sort | paste -sd ' '
}

check_dll() {
    local dll="$1" imports foreign exports
    imports="$(imports_of "$dll")"
    [ -n "$imports" ] || fail "${dll#"$ROOT"/}: no imports found, is it a DLL?"
    foreign="$(grep -vE "$SYSTEM_DLLS" <<<"$imports" || true)"
    [ -z "$foreign" ] || fail "${dll#"$ROOT"/} imports what the host's folder could stand in for: $(paste -sd ' ' <<<"$foreign")"
    exports="$(exports_of "$dll")"
    [ "$exports" = "$EXPORTS" ] || fail "${dll#"$ROOT"/} exports '$exports' instead of '$EXPORTS'"
    note "${dll#"$ROOT"/}: $(paste -sd ' ' <<<"$imports")"
}

main() {
    local dll checked=0
    need_tools objdump
    for dll in "$BUILD"/x86/Kestrel.dll "$BUILD"/x64/Kestrel.dll; do
        [ -f "$dll" ] || continue
        check_dll "$dll"
        checked=$((checked + 1))
    done
    [ "$checked" -eq 2 ] || fail "$checked of the two DLLs are built"
}

main "$@"
