#!/usr/bin/env bash
# Fetches SQLite's single source file as Debian publishes it, into build/sqlite, once. The package source comes through
# apt, which checks Debian's signature; the machine's own apt settings stay as they are.
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

FOLDER="$BUILD/sqlite"

# The machine's own package sources, as sources of source packages. usage: source_lists FOLDER
source_lists() {
    local folder="$1" file
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
        [ -f "$file" ] && { sed -n 's/^deb /deb-src /p' "$file" || true; } >>"$folder/kestrel.list"
    done
    for file in /etc/apt/sources.list.d/*.sources; do
        [ -f "$file" ] && { sed 's/^Types:.*/Types: deb-src/' "$file" && echo; } >>"$folder/kestrel.sources"
    done
}

# usage: make_source WORK
make_source() {
    local work="$1" options
    mkdir -p "$work/parts" "$work/lists/partial"
    source_lists "$work/parts"
    options=(-q -o Dir::Etc::sourcelist=/dev/null -o "Dir::Etc::sourceparts=$work/parts" -o "Dir::State::Lists=$work/lists"
        -o APT::Sandbox::User=root)
    apt-get "${options[@]}" update
    cd "$work"
    apt-get "${options[@]}" source sqlite3
    cd sqlite3-*/
    ./configure
    make sqlite3.c sqlite3.h
    # Whoever wonders later which source it was finds its sum beside it.
    sha256sum sqlite3.c sqlite3.h >SHA256SUMS
    mkdir -p "$FOLDER.new"
    cp sqlite3.c sqlite3.h SHA256SUMS "$FOLDER.new/"
}

main() {
    local work status=0
    if [ -f "$FOLDER/SHA256SUMS" ]; then
        (cd "$FOLDER" && sha256sum --quiet -c SHA256SUMS) >/dev/null 2>&1 && return 0
        rm -rf "$FOLDER"
    fi
    need_tools apt-get dpkg-source tclsh
    note "fetch the source of SQLite"
    work="$(mktemp -d)"
    rm -rf "$FOLDER.new"
    with_log sqlite make_source "$work" || status=$?
    rm -rf "$work"
    [ "$status" -eq 0 ] || fail "the source of SQLite could not be fetched, see build/logs/sqlite.log"
    mv "$FOLDER.new" "$FOLDER"
}

main "$@"
