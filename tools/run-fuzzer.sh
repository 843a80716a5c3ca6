#!/usr/bin/env bash
# Gives one fuzzer a short run that starts from its checked-in corpus and leaves that as it is.
# usage: tools/run-fuzzer.sh PROGRAM   (KESTREL_FUZZ_SECONDS: how long, 10 if not set)
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

main() {
    local program="$1" name corpus work
    name="${program##*/}"
    corpus="$ROOT/tests/fuzz/corpus/${name#fuzz_}"
    work="$BUILD/fuzz/$name"
    [ -n "$(ls -A "$corpus" 2>/dev/null)" ] || fail "${corpus#"$ROOT"/} holds no inputs"
    rm -rf "$work"
    # New inputs go to the first folder; what breaks the program stays in build/fuzz for looking at.
    mkdir -p "$work/found" "$work/failing"
    "$program" -max_total_time="${KESTREL_FUZZ_SECONDS:-10}" -timeout=10 -rss_limit_mb=4096 -print_final_stats=1 \
        -artifact_prefix="$work/failing/" "$work/found" "$corpus"
}

main "$@"
