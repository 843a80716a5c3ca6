#!/usr/bin/env bash
# The main job of ./run: what the project does once it is built and registered. The component is there to be driven by
# scripts, so a sample script drives it, under the script host of each bitness that is built.
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source=tools/wine-env.sh
. "$ROOT/tools/wine-env.sh"

# Runs every sample script under the script host of one build. usage: run_samples PRESET
run_samples() {
    local host="$BUILD/$1/kscript.exe" sample
    for sample in "$ROOT"/hosts/samples/*.vbs; do
        [ -f "$sample" ] || fail "hosts/samples holds no sample script"
        say "hosts/samples/${sample##*/} ($1)"
        "$ROOT/tools/wine.sh" "$host" "$(windows_path "$sample")" </dev/null || fail "the sample failed (exit code $?)"
    done
}

main() {
    local preset done_any=no
    for preset in x86 x64; do
        [ -f "$BUILD/$preset/kscript.exe" ] || continue
        run_samples "$preset"
        done_any=yes
    done
    [ "$done_any" = yes ] || fail "no script host has been built (build/x86/kscript.exe)"
}

main "$@"
