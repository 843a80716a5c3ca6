#!/usr/bin/env bash
# Makes the private Wine prefix when it is missing, unfinished or from an older recipe: a copy of one that is made once.
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source=tools/wine-env.sh
. "$ROOT/tools/wine-env.sh"

# Raise it whenever the steps below change.
RECIPE=2
WORK="$TEMPLATE.new"

# usage: is_whole FOLDER
is_whole() {
    local stamp="$1/${PREFIX_STAMP##*/}"
    [ -f "$stamp" ] && [ "$(cat "$stamp")" = "$RECIPE" ] &&
        [ -s "$1/system.reg" ] && [ -s "$1/user.reg" ] &&
        [ -f "$1/drive_c/windows/system32/kernel32.dll" ] &&
        [ -f "$1/drive_c/windows/syswow64/kernel32.dll" ]
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

# Made under another name and moved in one step, so that whatever stands under the final name is whole.
# usage: put_in_place FOLDER
put_in_place() {
    end_wine_server "$1"
    rm -rf "$1"
    mv "$WORK" "$1"
}

# The files of Windows, more than a gigabyte that nobody writes to, are shared; what programs change is each prefix's own.
copy_template() {
    mkdir -p "$WORK/drive_c" &&
        cp -al "$TEMPLATE/drive_c/windows" "$WORK/drive_c/" &&
        find "$TEMPLATE" -mindepth 1 -maxdepth 1 ! -name drive_c -exec cp -a -t "$WORK" {} + &&
        find "$TEMPLATE/drive_c" -mindepth 1 -maxdepth 1 ! -name windows -exec cp -a -t "$WORK/drive_c" {} +
}

main() {
    need_tools wineboot wineserver
    mkdir -p "$BUILD" "$(dirname "$PREFIX")" || fail "cannot write to build or to $(dirname "$PREFIX")"
    # Two runs at once must not build the same prefix: the second waits and finds it done. The children must not inherit
    # the lock, or a lingering Wine process would hold it.
    exec 9>"$TEMPLATE.lock"
    flock 9
    ! is_whole "$PREFIX" || return 0
    trap 'end_wine_server "$WORK"; rm -rf "$WORK"' EXIT
    trap 'exit 130' INT TERM HUP
    end_wine_server "$WORK"
    rm -rf "$WORK"
    if ! is_whole "$TEMPLATE"; then
        say "Making the Wine prefix"
        with_log prefix make_prefix 9>&- || fail "the Wine prefix could not be made"
        put_in_place "$TEMPLATE"
    fi
    copy_template || fail "the Wine prefix could not be copied (no right, or no room on the disk)"
    put_in_place "$PREFIX"
}

main "$@"
