#!/usr/bin/env bash
# Configures and builds presets, from nothing or on top of whatever an earlier run left.
# usage: tools/build.sh PRESET[:TARGET,TARGET...]...   (without targets: everything)
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

# A build folder is used again only when its configuration was finished, and in this very place: CMake refuses a cache
# that was made under another path, and an interrupted first configuration can leave wrong answers about the compiler.
configuration_is_usable() {
    local folder="$1"
    [ -f "$folder/build.ninja" ] && [ -f "$folder/configured" ] && [ "$(cat "$folder/configured")" = "$ROOT" ]
}

configure() {
    local preset="$1" folder="$BUILD/$1"
    configuration_is_usable "$folder" && return 0
    rm -rf "$folder"
    note "configure $preset"
    with_log "configure-$preset" cmake --preset "$preset" || return 1
    printf '%s\n' "$ROOT" >"$folder/configured"
}

build() {
    local preset="${1%%:*}" targets=()
    [[ "$1" != *:* ]] || IFS=, read -ra targets <<<"--target,${1#*:}"
    case "$preset" in x86 | x64) "$ROOT/tools/sqlite.sh" || return 1 ;; esac
    configure "$preset" || return 1
    note "build $preset"
    with_log "build-$preset" cmake --build --preset "$preset" -j "$JOBS" "${targets[@]}"
}

main() {
    local preset
    [ $# -gt 0 ] || fail "usage: tools/build.sh PRESET[:TARGET,TARGET...]..."
    need_tools cmake ninja
    cd "$ROOT"
    for preset in "$@"; do
        build "$preset" || exit 1
    done
}

main "$@"
