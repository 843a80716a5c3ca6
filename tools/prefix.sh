#!/usr/bin/env bash
# Makes the project's private Wine prefix when it is missing, unfinished or from an older recipe.
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source=tools/wine-env.sh
. "$ROOT/tools/wine-env.sh"

# Raise it whenever the steps below change.
RECIPE=2
WORK="$PREFIX.new"

prefix_is_whole() {
    [ -f "$PREFIX_STAMP" ] && [ "$(cat "$PREFIX_STAMP")" = "$RECIPE" ] &&
        [ -s "$PREFIX/system.reg" ] && [ -s "$PREFIX/user.reg" ] &&
        [ -f "$PREFIX/drive_c/windows/system32/kernel32.dll" ] &&
        [ -f "$PREFIX/drive_c/windows/syswow64/kernel32.dll" ]
}

# Registry settings for runs that nobody watches: a crash ends the program at once instead of opening a debugger, and
# windows are drawn by Wine itself, because without a window manager each managed one takes seconds to close. Every program
# that starts looks through the time zones in the order of their names until one fits the machine's: where that is UTC the
# first one does, or an eighth of the start would go into fifty others.
registry_settings() {
    cat <<'REG'
REGEDIT4

[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows NT\CurrentVersion\AeDebug]
"Debugger"="false"

[HKEY_LOCAL_MACHINE\Software\Wow6432Node\Microsoft\Windows NT\CurrentVersion\AeDebug]
"Debugger"="false"

[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows NT\CurrentVersion\Time Zones\0]
"Std"="UTC"
"Dlt"="UTC"
"TZI"=hex:00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00

[HKEY_CURRENT_USER\Software\Wine\WineDbg]
"ShowCrashDialog"=dword:00000000

[HKEY_CURRENT_USER\Software\Wine\X11 Driver]
"Managed"="N"
REG
}

make_prefix() {
    export WINEPREFIX="$WORK"
    unset DISPLAY
    wineboot -i || return 1
    # Without Wine's own fonts in the prefix dialogs come out too wide.
    cp /usr/share/wine/fonts/*.ttf "$WORK/drive_c/windows/Fonts/" || return 1
    registry_settings >"$WORK/drive_c/settings.reg"
    wine regedit /S 'C:\settings.reg' || return 1
    rm "$WORK/drive_c/settings.reg"
    wineserver -w
    grep -q ShowCrashDialog "$WORK/user.reg" || { echo "the settings did not reach the registry"; return 1; }
    printf '%s\n' "$RECIPE" >"$WORK/${PREFIX_STAMP##*/}"
}

main() {
    need_tools wineboot wineserver
    mkdir -p "$(dirname "$PREFIX")" || fail "cannot write to $(dirname "$PREFIX")"
    # Two runs at once must not build the same prefix: the second waits and finds it done. The children must not inherit
    # the lock, or a lingering Wine process would hold it.
    exec 9>"$PREFIX.lock"
    flock 9
    prefix_is_whole && return 0
    say "Making the Wine prefix"
    trap 'end_wine_server "$WORK"; rm -rf "$WORK"' EXIT
    trap 'exit 130' INT TERM HUP
    end_wine_server "$WORK"
    end_wine_server "$PREFIX"
    rm -rf "$WORK" "$PREFIX"
    with_log prefix make_prefix 9>&- || fail "the Wine prefix could not be made"
    # Moved in one step, so that whatever stands under the final name is whole.
    mv "$WORK" "$PREFIX"
}

main "$@"
