# What every script of the project shares: messages, the failure line, paths. Sourced, never run.
# shellcheck shell=bash

set -euo pipefail

ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)"
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

# Fails unless every tool is there. usage: need_tools TOOL...
need_tools() {
    local tool
    for tool in "$@"; do
        command -v "$tool" >/dev/null || fail "$tool is not installed (tools/packages.sh --all installs it)"
    done
}

# How far a running command is, as its log says: the last "[12/34]" or "12/34 Test"; nothing when it says nothing of that.
mark_of() { tail -c 400 "$1" 2>/dev/null | grep -aoE '^ *\[?[0-9]+/[0-9]+(\]| Test)' | tail -n 1 | tr -dc '0-9/' || true; }

# Shows what a running command has reached, when that is news, else a dot; beside others its name as well, for the one that
# shows them all. usage: show_progress NAME LOG PREVIOUS_MARK; the new mark is left in MARK
show_progress() {
    MARK="$(mark_of "$2")"
    if [ -n "${LANE_STATE:-}" ]; then
        printf '%s\n' "$1${MARK:+ }$MARK" >"$LANE_STATE"
    elif [ -z "$MARK" ]; then
        printf '.'
    elif [ "$MARK" != "$3" ]; then
        printf '[%s]' "$MARK"
    fi
}

# Runs a long command with its output in a log, a sign of life every ten seconds, and the log's end on failure.
# usage: with_log NAME COMMAND...
with_log() {
    local name="$1" log="$LOGS/$1.log" pid status=0 ticks=0 MARK=none
    shift
    { mkdir -p "$LOGS" && : >"$log"; } 2>/dev/null || fail "cannot write to build/logs (no right, or no room on the disk)"
    "$@" >"$log" 2>&1 </dev/null &
    pid=$!
    while kill -0 "$pid" 2>/dev/null; do
        sleep 0.1
        ticks=$((ticks + 1))
        [ "$ticks" -ne 50 ] || [ -n "${LANE_STATE:-}" ] || printf '   '
        [ $((ticks % 100)) -ne 50 ] || show_progress "$name" "$log" "$MARK"
    done
    [ "$ticks" -lt 50 ] || [ -n "${LANE_STATE:-}" ] || printf '\n'
    wait "$pid" || status=$?
    if [ "$status" -ne 0 ]; then
        tail -n "${KESTREL_LOG_TAIL:-40}" "$log" >&2
        printf 'error: %s failed (exit code %s); the whole output is in build/logs/%s.log\n' "$name" "$status" "$name" >&2
    fi
    return "$status"
}
