#!/usr/bin/env bash
# Fails when a built DLL imports anything but DLLs of Windows that no file in a host's folder can stand in for, exports
# other names than a COM server's, carries symbols or tables that belong beside it, or is not marked as what anybody would
# get from the same sources.
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

# Windows takes the first seven from its own folder, whatever lies beside the program. For comctl32 the manifest inside the
# library says where. Any other is looked for in the host's folder first: platform/SystemLibrary.h loads it from the right one.
SYSTEM_DLLS='^(advapi32|gdi32|kernel32|msvcrt|ole32|oleaut32|user32|comctl32)\.dll$'
# What it may grow to, in bytes. The tables by which the standard library writes floating-point numbers alone are 230,000.
LARGEST=700000
EXPORTS='DllCanUnloadNow DllGetClassObject DllInstall DllRegisterServer DllUnregisterServer'

# Lower-case names of the DLLs that FILE imports from.
imports_of() { objdump -p "$1" | sed -nE 's/^\s*DLL Name: (.*)$/\L\1/p' | sort -u; }

# The exported names of FILE, sorted, in one line.
exports_of() {
    objdump -p "$1" | sed -nE '/\[Ordinal\/Name Pointer\] Table/,/^$/s/^\s*\[ *[0-9]+\] (\+base\[ *[0-9]+\] +[0-9a-f]+ )?(.*)$/\2/p' |
        sort | paste -sd ' '
}

check_weight() {
    local dll="$1" size
    size="$(stat -c %s "$dll")"
    [ "$size" -le "$LARGEST" ] || fail "${dll#"$ROOT"/} has $size bytes, more than $LARGEST"
    ! objdump -h "$dll" | grep -q '\.debug_' || fail "${dll#"$ROOT"/} carries debug information"
    if ! objdump -h "$dll" | grep -q '\.gnu_debuglink' || [ ! -f "$dll.debug" ]; then
        fail "${dll#"$ROOT"/} has no symbols beside it"
    fi
    [ "$(time_stamp_of "$dll")" = 0 ] || fail "${dll#"$ROOT"/} carries the time at which it was built"
}

# The time in the header of FILE.
time_stamp_of() {
    local header
    header="$(od -An -tu4 -j 60 -N 4 "$1")"
    od -An -tu4 -j $((header + 8)) -N 4 "$1" | tr -d ' '
}

check_dll() {
    local dll="$1" imports foreign exports
    imports="$(imports_of "$dll")"
    [ -n "$imports" ] || fail "${dll#"$ROOT"/}: no imports found, is it a DLL?"
    foreign="$(grep -vE "$SYSTEM_DLLS" <<<"$imports" || true)"
    [ -z "$foreign" ] || fail "${dll#"$ROOT"/} imports what the host's folder could stand in for: $(paste -sd ' ' <<<"$foreign")"
    exports="$(exports_of "$dll")"
    [ "$exports" = "$EXPORTS" ] || fail "${dll#"$ROOT"/} exports '$exports' instead of '$EXPORTS'"
    check_weight "$dll"
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
