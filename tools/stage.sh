# The display and the warm Wine server that tests run on. Sourced after common.sh by scripts that run in a session, which
# ends both.
# shellcheck shell=bash
# shellcheck source=tools/wine-env.sh
. "$ROOT/tools/wine-env.sh"

# Starts a virtual display under the first free number and points DISPLAY at it. It must stand before the Wine server
# starts: a server that began without a display refuses windows for the rest of its life.
start_display() {
    local file="$PREFIX.display"
    need_tools Xvfb
    rm -f "$file"
    Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$file" >/dev/null 2>&1 </dev/null &
    for _ in $(seq 100); do
        [ -s "$file" ] && break
        sleep 0.1
    done
    [ -s "$file" ] || fail "the virtual display did not start (Xvfb)"
    DISPLAY=":$(cat "$file")"
    export DISPLAY
}

# Keeps one idle program running in the prefix. As long as it lives Wine's server and services stay, so that each test
# starts in 0.1 s instead of 1 s, and no test is the one that starts them: they would inherit its output pipe and ctest
# would wait for them. It ends with this script, whatever ends that: its standard input comes to its end.
start_keep_alive() {
    end_wine_server "$PREFIX"
    { tail --pid=$$ -f /dev/null | "$ROOT/tools/wine.sh" cmd /c pause; } >/dev/null 2>&1 &
    # The first program to come back finds the services up. Seldom it never comes back, and a second one does.
    timeout 60 "$ROOT/tools/wine.sh" cmd /c exit 0 >/dev/null 2>&1 </dev/null ||
        timeout 120 "$ROOT/tools/wine.sh" cmd /c exit 0 >/dev/null 2>&1 </dev/null ||
        fail "Wine does not run (tools/wine.sh cmd /c exit 0)"
    # Calls between processes start their service, and that keeps the desktop's process, which the first program with
    # windows starts and which inherits its output pipe: neither may begin with a test.
    timeout 60 "$ROOT/tools/wine.sh" net start RpcSs >/dev/null 2>&1 </dev/null || true
    "$ROOT/tools/wine.sh" explorer /desktop >/dev/null 2>&1 </dev/null &
}
