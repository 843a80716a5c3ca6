#!/usr/bin/env bash
# Fails when a source is not formatted as .clang-format says.
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

need_tools clang-format-14
cd "$ROOT"
find src tests hosts ledger bench packaging \( -name '*.cpp' -o -name '*.h' \) -print0 |
    xargs -0 -n 20 -P "$JOBS" clang-format-14 --dry-run --Werror
