#!/usr/bin/env bash
# Configures and builds presets, side by side, from nothing or on top of whatever an earlier run left. A preset that was
# built leaves build/PRESET/built.
# usage: tools/build.sh PRESET[:TARGET,TARGET...]...   (without targets: everything)
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

# A build folder is used again only when its configuration was finished, from these presets, and in this very place: CMake
# refuses a cache that was made under another path, and an interrupted first configuration can leave wrong answers about the
# compiler.
wanted_configuration() { printf '%s %s\n' "$ROOT" "$(cksum <"$ROOT/CMakePresets.json")"; }

configuration_is_usable() {
    local folder="$1"
    [ -f "$folder/build.ninja" ] && [ -f "$folder/configured" ] &&
        [ "$(cat "$folder/configured")" = "$(wanted_configuration)" ]
}

configure() {
    local preset="$1" folder="$BUILD/$1"
    configuration_is_usable "$folder" && return 0
    rm -rf "$folder"
    note "configure $preset"
    with_log "configure-$preset" cmake --preset "$preset" || return 1
    wanted_configuration >"$folder/configured"
}

# usage: build PRESET[:TARGET,...] JOBS
build() {
    local preset="${1%%:*}" jobs="$2" targets=()
    [[ "$1" != *:* ]] || IFS=, read -ra targets <<<"--target,${1#*:}"
    configure "$preset" || return 1
    note "build $preset"
    with_log "build-$preset" cmake --build --preset "$preset" -j "$jobs" "${targets[@]}" || return 1
    touch "$BUILD/$preset/built"
}

# The processors are shared: one build alone leaves some idle whenever it waits for its longest step.
main() {
    local preset running=() status=0
    [ $# -gt 0 ] || fail "usage: tools/build.sh PRESET[:TARGET,TARGET...]..."
    need_tools cmake ninja
    cd "$ROOT"
    for preset in "$@"; do rm -f "$BUILD/${preset%%:*}/built"; done
    case " $*" in *" x86"* | *" x64"*) "$ROOT/tools/sqlite.sh" ;; esac
    for preset in "$@"; do
        build "$preset" $(((JOBS + $# - 1) / $#)) &
        running+=("$!")
    done
    for preset in "${running[@]}"; do wait "$preset" || status=1; done
    return "$status"
}

main "$@"
