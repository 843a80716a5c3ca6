#!/usr/bin/env bash
# Installs the Debian packages that building and testing need, and nothing when all are there already.
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

PACKAGES_NATIVE=(
    build-essential cmake ninja-build ccache clang clang-format clang-tidy libclang-rt-14-dev googletest shellcheck procps
    clang-tools llvm wixl msitools
    g++-mingw-w64-i686-posix g++-mingw-w64-x86-64-posix mingw-w64-tools libwine-dev
    wine wine64 xvfb xdotool imagemagick fonts-wine fonts-liberation iso-codes
    python3 libcli11-dev nlohmann-json3-dev unixodbc libodbc2 odbc-postgresql postgresql tcl
    mariadb-server mariadb-client libmariadb3 galera-4 rsync chromium
)
PACKAGES_I386=(wine32:i386 libwine:i386 libodbc2:i386 odbc-postgresql:i386 libmariadb3:i386)
DRIVERS=(amd64 i386)
POLICY=/usr/sbin/policy-rc.d

# Prints those of the packages that are not installed. usage: missing_packages PACKAGE...
missing_packages() {
    local package native installed
    native="$(dpkg --print-architecture)"
    installed="$(dpkg-query -W -f='${db:Status-Abbrev}${Package}:${Architecture}\n')"
    for package in "$@"; do
        # A bare name means this machine's architecture, or a package that is the same on all.
        grep -qxF -e "ii $package" -e "ii $package:$native" -e "ii $package:all" <<<"$installed" || printf '%s\n' "$package"
    done
}

# Writes the machine's own package sources less the security suites to FILE. The i386 index of the security suite can be
# out of step with its amd64 one, and then nothing of i386 installs until it is left out.
sources_without_security() {
    local file="$1" source
    : >"$file"
    for source in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
        [ -f "$source" ] && { grep -v security "$source" || true; } >>"$file.list"
    done
    for source in /etc/apt/sources.list.d/*.sources; do
        [ -f "$source" ] || continue
        awk 'BEGIN { RS = ""; ORS = "\n\n" } !/security/' "$source" >>"$file"
    done
}

apt_quiet() { DEBIAN_FRONTEND=noninteractive apt-get -q "$@"; }

# No server that a package brings is to run: the tests start their own, with data of their own. Packages ask this file
# before they start a service; the machine's own one, if there is any, stays as it is.
keep_services_down() {
    [ ! -e "$POLICY" ] || return 0
    printf '#!/bin/sh\nexit 101\n' >"$POLICY"
    chmod 755 "$POLICY"
    trap 'rm -f "$POLICY"' EXIT
    trap 'exit 130' INT TERM HUP
}

# The ODBC driver for MariaDB, which is not installable for two architectures at once, is unpacked for each.
# usage: unpack_drivers APT_OPTION...
unpack_drivers() {
    local work architecture status=0
    work="$(mktemp -d)"
    (cd "$work" && apt_quiet "$@" download "${DRIVERS[@]/#/odbc-mariadb:}") || status=1
    for architecture in "${DRIVERS[@]}"; do
        [ "$status" -eq 0 ] || break
        dpkg-deb -x "$work"/odbc-mariadb_*_"$architecture.deb" "$work/$architecture" || status=1
        mkdir -p "$BUILD/odbc/$architecture"
        mv "$work/$architecture"/usr/lib/*/odbc/libmaodbc.so "$BUILD/odbc/$architecture/" || status=1
    done
    rm -rf "$work"
    return "$status"
}

drivers_are_there() {
    local architecture
    for architecture in "${DRIVERS[@]}"; do
        [ -f "$BUILD/odbc/$architecture/libmaodbc.so" ] || return 1
    done
}

# usage: install_from APT_OPTION... -- PACKAGE...
install_from() {
    local options=()
    while [ "$1" != -- ]; do
        options+=("$1")
        shift
    done
    shift
    apt_quiet "${options[@]}" update || return 1
    [ $# -eq 0 ] || apt_quiet "${options[@]}" install -y --no-install-recommends "$@" || return 1
    drivers_are_there || unpack_drivers "${options[@]}"
}

install_without_security() {
    local work status=0 options
    work="$(mktemp -d)"
    mkdir -p "$work/parts" "$work/lists/partial"
    sources_without_security "$work/kestrel.sources"
    # A deb822 file is only read from a parts folder, a one-line file only as the source list.
    mv "$work/kestrel.sources" "$work/parts/"
    [ -f "$work/kestrel.sources.list" ] && mv "$work/kestrel.sources.list" "$work/parts/kestrel.list"
    options=(-o Dir::Etc::sourcelist=/dev/null -o "Dir::Etc::sourceparts=$work/parts" -o "Dir::State::Lists=$work/lists")
    install_from "${options[@]}" -- "$@" || status=$?
    rm -rf "$work"
    return "$status"
}

main() {
    local missing wanted=("${PACKAGES_NATIVE[@]}" "${PACKAGES_I386[@]}")
    mapfile -t missing < <(missing_packages "${wanted[@]}")
    [ "${#missing[@]}" -eq 0 ] && drivers_are_there && return 0
    say "Installing ${missing[*]:-the driver for MariaDB}"
    command -v apt-get >/dev/null || fail "packages are missing and there is no apt-get here: ${missing[*]:-odbc-mariadb}"
    [ "$(id -u)" -eq 0 ] || fail "not root, so packages cannot be installed: ${missing[*]:-odbc-mariadb}"
    dpkg --add-architecture i386
    keep_services_down
    with_log packages install_from -- "${missing[@]}" 2>/dev/null && return 0
    note "the plain way failed; once more without the security suites"
    with_log packages-retry install_without_security "${missing[@]}" ||
        fail "no package source has these packages, see build/logs/packages-retry.log: ${missing[*]:-odbc-mariadb}"
}

main "$@"
