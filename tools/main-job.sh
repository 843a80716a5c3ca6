#!/usr/bin/env bash
# The main job of ./run: what the project does once it is built and registered. Codes are issued for thousands of records
# by rules made from country data, one is taken apart and one shown beforehand; then the sample scripts drive the
# component themselves. Both builds do it.
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source=tools/wine-env.sh
. "$ROOT/tools/wine-env.sh"

SAMPLES="$BUILD/samples"
SOME_REFUSED=3

# One command of the issuing host. usage: issuer PRESET ARGUMENTS...
issuer() { "$ROOT/tools/wine.sh" "$BUILD/$1/kissue.exe" "${@:2}" </dev/null; }

# Issues a code for each record of a sample; shows the first codes, what was refused first, and the count. Some records
# are of countries that are no more, and the rule has to refuse them. usage: issue_sample PRESET NAME
issue_sample() {
    local preset="$1" name="$2" status=0
    say "$name ($preset)"
    issuer "$preset" issue "$(windows_path "$SAMPLES/$name.rule")" "$(windows_path "$SAMPLES/$name.csv")" \
        >"$SAMPLES/$name.codes" 2>"$SAMPLES/$name.log" || status=$?
    head -n 3 "$SAMPLES/$name.codes"
    note "... all of them are in build/samples/$name.codes"
    grep -m 1 '^line ' "$SAMPLES/$name.log" || true
    tail -n 1 "$SAMPLES/$name.log"
    [ "$status" -eq 0 ] || [ "$status" -eq "$SOME_REFUSED" ] || fail "no codes for $name (exit code $status)"
}

issue_samples() {
    local preset="$1" code
    issue_sample "$preset" documents
    issue_sample "$preset" items
    issue_sample "$preset" sites
    code="$(sed -n '1000s/\t.*//p' "$SAMPLES/sites.codes")"
    say "What $code stands for ($preset)"
    issuer "$preset" explain "$(windows_path "$SAMPLES/sites.rule")" "$code" || fail "the code could not be taken apart"
    say "The next document of 1977, without issuing it ($preset)"
    issuer "$preset" preview "$(windows_path "$SAMPLES/documents.rule")" Date=1977-12-31 || fail "no code could be shown"
}

# Runs every sample script under the script host of one build. usage: run_scripts PRESET
run_scripts() {
    local host="$BUILD/$1/kscript.exe" sample
    for sample in "$ROOT"/hosts/samples/*.vbs; do
        [ -f "$sample" ] || fail "hosts/samples holds no sample script"
        say "hosts/samples/${sample##*/} ($1)"
        "$ROOT/tools/wine.sh" "$host" "$(windows_path "$sample")" </dev/null || fail "the sample failed (exit code $?)"
    done
}

main() {
    local preset done_any=no
    "$ROOT/hosts/samples/make_samples.py" "$SAMPLES" || fail "the sample rules could not be made"
    for preset in x86 x64; do
        if [ ! -f "$BUILD/$preset/kissue.exe" ] || [ ! -f "$BUILD/$preset/kscript.exe" ]; then continue; fi
        issue_samples "$preset"
        run_scripts "$preset"
        done_any=yes
    done
    [ "$done_any" = yes ] || fail "no host has been built (build/x86/kissue.exe)"
}

main "$@"
