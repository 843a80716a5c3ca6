# Parts of a test run side by side, each in a shell of its own; what a part says is shown when it ends, and its counts are
# added then. One test seldom keeps a processor busy: Wine's server works while the test waits, and the other way round.
# Sourced after common.sh and count.sh, never run.
# shellcheck shell=bash

LANES=() # "PID NAME" of those under way

# usage: start_lane NAME FUNCTION
start_lane() {
    local files="$LOGS/lane-$1"
    mkdir -p "$LOGS"
    rm -f "$files.count" "$files.state"
    (
        # with_log tells there how far it is.
        # shellcheck disable=SC2030,SC2034 # meant for this shell and what it calls
        LANE_STATE="$files.state"
        "$2"
        save_count "$files.count"
    ) >"$files.log" 2>&1 </dev/null &
    LANES+=("$! $1")
}

# Where the lanes are, in one line.
show_lanes() {
    local lane states=()
    for lane in "${LANES[@]}"; do
        [ ! -s "$LOGS/lane-${lane#* }.state" ] || states+=("${lane#* }: $(cat "$LOGS/lane-${lane#* }.state")")
    done
    if [ "${#states[@]}" -gt 0 ]; then
        printf -v lane '%s, ' "${states[@]}"
        note "${lane%, }"
    fi
}

# usage: end_lane PID NAME
end_lane() {
    wait "$1" || true
    cat "$LOGS/lane-$2.log"
    add_count "$LOGS/lane-$2.count" || count_failure "$2 ended before its end"
}

# Waits for all lanes, with a sign of life every half minute.
wait_for_lanes() {
    local lane left seconds=0
    while [ "${#LANES[@]}" -gt 0 ]; do
        sleep 1
        seconds=$((seconds + 1))
        left=()
        for lane in "${LANES[@]}"; do
            if kill -0 "${lane% *}" 2>/dev/null; then left+=("$lane"); else end_lane "${lane% *}" "${lane#* }"; fi
        done
        LANES=("${left[@]}")
        [ $((seconds % 30)) -ne 0 ] || show_lanes
    done
}
