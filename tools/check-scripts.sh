#!/usr/bin/env bash
# Fails when shellcheck objects to one of the project's shell scripts.
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

need_tools shellcheck
cd "$ROOT"
shellcheck --external-sources run test test-* dist kledger .ci/run bench/run tools/*.sh
