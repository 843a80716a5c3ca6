#!/usr/bin/env bash
# Installs the Debian packages that building and testing need, and nothing when all are there already.
# shellcheck source=tools/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

PACKAGES_NATIVE=(
    build-essential cmake ninja-build ccache clang clang-format clang-tidy libclang-rt-14-dev googletest shellcheck procps
    clang-tools llvm
    g++-mingw-w64-i686-posix g++-mingw-w64-x86-64-posix mingw-w64-tools libwine-dev
    wine wine64 xvfb xdotool imagemagick fonts-wine fonts-liberation iso-codes
    python3 libcli11-dev nlohmann-json3-dev unixodbc libodbc2 odbc-postgresql postgresql tcl
)
PACKAGES_I386=(wine32:i386 libwine:i386 libodbc2:i386 odbc-postgresql:i386)

missing_packages() {
    local package native installed
    native="$(dpkg --print-architecture)"
    installed="$(dpkg-query -W -f='${db:Status-Abbrev}${Package}:${Architecture}\n')"
    for package in "${PACKAGES_NATIVE[@]}" "${PACKAGES_I386[@]}"; do
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

install_plainly() {
    apt_quiet update && apt_quiet install -y --no-install-recommends "$@"
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
    { apt_quiet "${options[@]}" update && apt_quiet "${options[@]}" install -y --no-install-recommends "$@"; } || status=$?
    rm -rf "$work"
    return "$status"
}

main() {
    local missing
    mapfile -t missing < <(missing_packages)
    [ "${#missing[@]}" -eq 0 ] && return 0
    say "Installing ${#missing[@]} packages"
    command -v apt-get >/dev/null || fail "these packages are missing and there is no apt-get here: ${missing[*]}"
    [ "$(id -u)" -eq 0 ] || fail "not root, so these packages cannot be installed: ${missing[*]}"
    dpkg --add-architecture i386
    with_log packages install_plainly "${missing[@]}" 2>/dev/null && return 0
    note "the plain way failed; once more without the security suites"
    with_log packages-retry install_without_security "${missing[@]}" ||
        fail "no package source has these packages, see build/logs/packages-retry.log: ${missing[*]}"
}

main "$@"
