#!/usr/bin/env bash
# The main job of ./run: what the project does once it is built and registered. Rules made from country data are stored in
# a ledger, codes are issued for thousands of records and audited; then the sample scripts drive the component themselves.
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source=tools/wine-env.sh
. "$ROOT/tools/wine-env.sh"

SAMPLES="$BUILD/samples"
SOME_REFUSED=3

# What one build makes of the samples. usage: ledger_of PRESET; codes_of PRESET NAME
ledger_of() { echo "$SAMPLES/$1/ledger.db"; }
codes_of() { echo "$SAMPLES/$1/$2.codes"; }

# One command of the ledger, under the build named. usage: kledger PRESET ARGUMENTS...
kledger() {
    "$ROOT/tools/wine.sh" "$BUILD/$1/kledger.exe" --database "$(windows_path "$(ledger_of "$1")")" "${@:2}" </dev/null
}

# Stores a sample rule and issues a code for each of its records; shows the first codes and what was refused first. Some
# records are of countries that are no more, and the rule has to refuse them. usage: issue_sample PRESET NAME POLICY
issue_sample() {
    local preset="$1" name="$2" policy="$3" codes log status=0
    codes="$(codes_of "$preset" "$name")"
    log="${codes%.codes}.log"
    say "$name ($policy, $preset)"
    kledger "$preset" rule import "$(windows_path "$SAMPLES/$name.rule")" --policy "$policy" ||
        fail "the rule $name could not be stored (exit code $?)"
    kledger "$preset" issue "$(windows_path "$SAMPLES/$name.csv")" --rule "$name" --keep \
        >"$codes" 2>"$log" || status=$?
    head -n 3 "$codes"
    note "... ${codes#"$ROOT"/} has all"
    grep -m 1 '^line ' "$log" || true
    tail -n 1 "$log"
    [ "$status" -eq 0 ] || [ "$status" -eq "$SOME_REFUSED" ] || fail "no codes for $name (exit code $status)"
}

# The ledger is made anew, so that each run issues the same codes. usage: run_ledger PRESET
run_ledger() {
    rm -rf "${SAMPLES:?}/$1"
    mkdir "$SAMPLES/$1"
    issue_sample "$1" documents gapless
    issue_sample "$1" items fast
    issue_sample "$1" sites gapless
    say "What the ledger holds"
    kledger "$1" rule list || fail "the rules could not be listed (exit code $?)"
    local name
    for name in documents items sites; do
        note "audit of $name: $(kledger "$1" audit --rule "$name" | tail -n 1)"
    done
    kledger "$1" explain --rule sites "$(sed -n '1000s/\t.*//p' "$(codes_of "$1" sites)")" || fail "no code could be explained"
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

# usage: do_job PRESET
do_job() {
    run_ledger "$1"
    run_scripts "$1"
}

# Both builds work side by side; what the second one says comes after the first.
main() {
    local second="$LOGS/main-job-x64.log" job="" status=0
    "$ROOT/hosts/samples/make_samples.py" "$SAMPLES" || fail "the sample rules could not be made"
    mkdir -p "$LOGS"
    if [ -f "$BUILD/x64/kledger.exe" ]; then
        do_job x64 >"$second" 2>&1 &
        job="$!"
    fi
    if [ -f "$BUILD/x86/kledger.exe" ]; then do_job x86; elif [ -z "$job" ]; then fail "no host has been built"; fi
    [ -n "$job" ] || return 0
    wait "$job" || status=$?
    cat "$second"
    return "$status"
}

main "$@"
