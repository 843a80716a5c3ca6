# What every script of the project shares: messages, the failure line, paths. Sourced, never run.
# shellcheck shell=bash

set -euo pipefail

ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
BUILD="$ROOT/build"
LOGS="$BUILD/logs"
# Read by the scripts that source this file.
# shellcheck disable=SC2034
JOBS="$(nproc)"

say() { printf '== %s\n' "$*"; }
note() { printf '   %s\n' "$*"; }

# One clear line on standard error, then out: every script ends through here when it cannot go on.
fail() {
    printf 'error: %s\n' "$*" >&2
    exit 1
}

# Runs a long command with its output in a log, a dot every five seconds, and the log's end on failure.
# usage: with_log NAME COMMAND...
with_log() {
    local name="$1" log="$LOGS/$1.log" pid status=0
    shift
    mkdir -p "$LOGS"
    "$@" >"$log" 2>&1 </dev/null &
    pid=$!
    while kill -0 "$pid" 2>/dev/null; do
        printf '.'
        for _ in $(seq 25); do
            kill -0 "$pid" 2>/dev/null || break
            sleep 0.2
        done
    done
    printf '\n'
    wait "$pid" || status=$?
    if [ "$status" -ne 0 ]; then
        tail -n 40 "$log" >&2
        printf 'error: %s failed (exit code %s); the whole output is in build/logs/%s.log\n' "$name" "$status" "$name" >&2
    fi
    return "$status"
}
