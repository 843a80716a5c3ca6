#!/usr/bin/env bash
# Installs the Debian packages that are missing: what building and the main job need, or what testing needs as well.
# usage: tools/packages.sh [--all | --clients]   (--all: also compilers and tools for checking, servers, and what the tests
#        drive; --clients: also what the samples of other languages need)
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

PACKAGES_BUILD=(
    build-essential cmake ninja-build ccache procps googletest tcl python3
    g++-mingw-w64-i686-posix g++-mingw-w64-x86-64-posix mingw-w64-tools libwine-dev libcli11-dev nlohmann-json3-dev
    wine wine64 wine32:i386 libwine:i386 xvfb fonts-wine fonts-liberation iso-codes
)
PACKAGES_TEST=(
    git clang clang-format clang-tidy clang-tools llvm libclang-rt-14-dev shellcheck wixl msitools
    xdotool imagemagick chromium unixodbc libodbc2 libodbc2:i386
    odbc-postgresql odbc-postgresql:i386 postgresql mariadb-server mariadb-client libmariadb3 libmariadb3:i386 galera-4 rsync
)
PACKAGES_PASCAL=(fp-compiler-3.2.2 fpc-source-3.2.2)
PACKAGES_CLIENTS=("${PACKAGES_PASCAL[@]}" openssl)
SERVICES=(postgresql mariadb)
DRIVERS=(amd64 i386)
# Where the system looks whether packages may start services, and for the services themselves; tests name other places.
POLICY="${KESTREL_POLICY:-/usr/sbin/policy-rc.d}"
UNITS="${KESTREL_UNITS:-/lib/systemd/system}"

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

# Nor when the machine starts again. A service that was there before stays as it is. usage: keep_services_off SERVICE...
keep_services_off() {
    local service
    command -v systemctl >/dev/null || return 0
    for service in "$@"; do
        systemctl disable --quiet "$service" >/dev/null 2>&1 || note "the service $service could not be switched off"
    done
}

# Prints those services that no package has brought yet.
services_to_come() {
    local service
    for service in "${SERVICES[@]}"; do
        [ -f "$UNITS/$service.service" ] || printf '%s\n' "$service"
    done
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
    local missing services wanted=("${PACKAGES_BUILD[@]}")
    case "${1:-}" in
    "") DRIVERS=() ;;
    --all) wanted+=("${PACKAGES_TEST[@]}" "${PACKAGES_PASCAL[@]}") ;;
    --clients)
        DRIVERS=()
        wanted+=("${PACKAGES_CLIENTS[@]}")
        # It need not have come as a package of Debian's.
        command -v npm >/dev/null || wanted+=(npm)
        ;;
    *) fail "usage: tools/packages.sh [--all | --clients]" ;;
    esac
    mapfile -t missing < <(missing_packages "${wanted[@]}")
    [ "${#missing[@]}" -eq 0 ] && drivers_are_there && return 0
    say "Installing ${missing[*]:-the driver for MariaDB}"
    command -v apt-get >/dev/null || fail "packages are missing and there is no apt-get here: ${missing[*]:-odbc-mariadb}"
    [ "$(id -u)" -eq 0 ] || fail "not root, so packages cannot be installed: ${missing[*]:-odbc-mariadb}"
    mapfile -t services < <(services_to_come)
    dpkg --add-architecture i386
    keep_services_down
    if ! with_log packages install_from -- "${missing[@]}" 2>/dev/null; then
        note "the plain way failed; once more without the security suites"
        with_log packages-retry install_without_security "${missing[@]}" ||
            fail "no package source has these packages, see build/logs/packages-retry.log: ${missing[*]:-odbc-mariadb}"
    fi
    [ "${1:-}" != --all ] || keep_services_off "${services[@]}"
}

main "$@"
