#!/usr/bin/env bash
# Runs a command so that nothing it starts outlives it: not when it ends, fails, is interrupted or is killed outright.
# One session at a time per folder.
# usage: tools/session.sh [--wine] COMMAND...   (--wine: with a display of its own and a warm Wine server, for ctest)
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source=tools/wine-env.sh
. "$ROOT/tools/wine-env.sh"

# Ends everything of a login session (the command runs in one of its own) and the servers of all private Wine prefixes.
# usage: end_all SESSION
end_all() {
    local session="$1" prefix
    for prefix in "$PREFIX" "$BUILD"/*wine*; do end_wine_server "$prefix"; done
    pkill -TERM -s "$session" || return 0
    for _ in $(seq 50); do
        pgrep -s "$session" >/dev/null || return 0
        sleep 0.1
    done
    pkill -KILL -s "$session" || true
}

# Waits for the end of the process that started the session, and clears up in its place.
guard() {
    tail --pid="$1" -f /dev/null
    end_all "$2"
}

# Descriptor 9 is the lock. The guard keeps it open until it has cleared up; the command must not have it, or whatever it
# leaves running would keep the next session out.
take_lock() {
    mkdir -p "$BUILD" 2>/dev/null || fail "cannot make the folder build (no right, or no room on the disk)"
    exec 9>"$BUILD/session.lock"
    flock -w 20 9 || fail "another run is under way in this folder"
}

CHILD="" GUARD=""
end_session() {
    trap '' INT TERM HUP
    [ -z "$CHILD" ] || end_all "$CHILD"
    [ -z "$GUARD" ] || pkill -TERM -s "$GUARD" || true
}

main() {
    local status=0
    if [ "${1:-}" = --guard ]; then
        guard "$2" "$3"
        return
    fi
    [ $# -gt 0 ] || fail "usage: tools/session.sh [--wine] COMMAND..."
    [ "$1" != --wine ] || set -- "$ROOT/tools/with-wine.sh" "${@:2}"
    take_lock
    trap end_session EXIT
    trap 'exit 130' INT
    trap 'exit 143' TERM HUP
    KESTREL_SESSION=$$ setsid "$@" <&0 9>&- &
    CHILD=$!
    setsid "$ROOT/tools/session.sh" --guard $$ "$CHILD" </dev/null >/dev/null 2>&1 &
    GUARD=$!
    wait "$CHILD" || status=$?
    return "$status"
}

main "$@"
