# Counts checks and closes with "N passed, N failed". Sourced after common.sh, never run.
# shellcheck shell=bash

PASSED=0
FAILED=0
FAILURES=()

count_pass() { PASSED=$((PASSED + 1)); }

count_failure() {
    FAILED=$((FAILED + 1))
    FAILURES+=("$1")
}

# One check, counted by its exit code. usage: check NAME COMMAND...
check() {
    local name="$1"
    shift
    note "$name"
    if with_log "$name" "$@"; then count_pass; else count_failure "$name"; fi
}

# What a shell has counted, for the one that started it. usage: save_count FILE; add_count FILE
save_count() { printf '%s\n' "$PASSED" "$FAILED" "${FAILURES[@]}" >"$1"; }

add_count() {
    local lines
    [ -f "$1" ] || return 1
    mapfile -t lines <"$1"
    PASSED=$((PASSED + lines[0]))
    FAILED=$((FAILED + lines[1]))
    FAILURES+=("${lines[@]:2}")
}

closing() {
    local failure
    for failure in "${FAILURES[@]}"; do note "failed: $failure"; done
    printf '%s passed, %s failed\n' "$PASSED" "$FAILED"
    [ "$FAILED" -eq 0 ] && [ "$PASSED" -gt 0 ]
}
