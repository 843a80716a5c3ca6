#!/usr/bin/env bash
# Compiles an Object Pascal program for 64-bit Windows. Debian brings Free Pascal for its own system alone: the units for
# Windows are compiled from its sources when they are used first, into build/pascal, and kept.
# usage: tools/pascal.sh PROGRAM.pas OUTPUT.exe
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

SOURCES="$(find /usr/share/fpcsrc -mindepth 1 -maxdepth 1 -type d 2>/dev/null | sort | tail -n 1)"
RTL="$SOURCES/rtl"
PACKAGES="$SOURCES/packages"
UNITS="$BUILD/pascal"
OPTIONS=(-n -Twin64 -O1 -Sg -Sc -v0e -l- "-FU$UNITS")

# Where the sources of the units lie, and what these include.
folders() {
    local folder
    for folder in "$RTL"/{win64,win,win/wininc,inc,x86_64,objpas,objpas/sysutils,objpas/classes} \
        "$PACKAGES"/rtl-objpas/src/{inc,win,common,x86_64} "$PACKAGES"/rtl-extra/src/{inc,win} \
        "$PACKAGES"/{winunits-base,fcl-registry,fcl-base}/src "$PACKAGES/fcl-base/src/win"; do
        OPTIONS+=("-Fu$folder" "-Fi$folder")
    done
}

# The first units name no other that they need.
compile_first_units() {
    [ ! -f "$UNITS/ready" ] || return 0
    mkdir -p "$UNITS"
    ppcx64 "${OPTIONS[@]}" -Us "$RTL/win64/system.pp"
    for unit in inc/uuchar.pp objpas/objpas.pp inc/fpintres.pp win64/sysinit.pp; do ppcx64 "${OPTIONS[@]}" "$RTL/$unit"; done
    : >"$UNITS/ready"
}

main() {
    [ $# -eq 2 ] || fail "usage: tools/pascal.sh PROGRAM.pas OUTPUT.exe"
    need_tools ppcx64
    [ -n "$SOURCES" ] || fail "the sources of Free Pascal are not installed (tools/packages.sh --clients installs them)"
    folders
    compile_first_units
    ppcx64 "${OPTIONS[@]}" "-Fu$(dirname "$2")" -Xs "$1" "-o$2"
}

main "$@"
