# The environment of the project's private Wine prefix. Sourced after common.sh, never run.
# shellcheck shell=bash

PREFIX="${KESTREL_WINEPREFIX:-$BUILD/wine}"
# What each prefix begins as.
# shellcheck disable=SC2034 # read by the scripts that source this file
TEMPLATE="$BUILD/wine-template"
# A prefix without it was never finished; its content is the version of the recipe in prefix.sh.
# shellcheck disable=SC2034 # read by the scripts that source this file
PREFIX_STAMP="$PREFIX/kestrel-prefix"

export WINEPREFIX="$PREFIX"
export WINEARCH=win64
export WINEDEBUG="${WINEDEBUG--all}"
# No .NET, no browser engine, no menu entries outside the prefix: the component needs none of them, and each would ask
# for a download or write into the home directory.
export WINEDLLOVERRIDES="${WINEDLLOVERRIDES-mscoree,mshtml=;winemenubuilder.exe=d}"

# The name that Windows programs in the prefix know a file by. usage: windows_path FILE
windows_path() {
    local path
    path="$(realpath -m "$1")"
    printf 'Z:%s\n' "${path//\//\\}"
}

# Ends the server of a prefix and all its programs; without one there is nothing to do. usage: end_wine_server FOLDER
end_wine_server() {
    [ -d "$1" ] && command -v wineserver >/dev/null || return 0
    WINEPREFIX="$1" wineserver -k 2>/dev/null || true
    WINEPREFIX="$1" timeout 10 wineserver -w 2>/dev/null || true
}
