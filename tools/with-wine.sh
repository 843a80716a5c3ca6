#!/usr/bin/env bash
# Runs a command with a virtual display and a warm server of the private Wine prefix. Both end with the surrounding
# session: see session.sh.
# usage: tools/session.sh --wine COMMAND...
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source=tools/stage.sh
. "$ROOT/tools/stage.sh"

[ -n "${KESTREL_SESSION:-}" ] || fail "usage: tools/session.sh --wine COMMAND..."
start_display
"$ROOT/tools/prefix.sh"
start_keep_alive
exec "$@"
