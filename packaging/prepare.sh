# Read by ./run and ./check: the steps that they share. Expects `set -euo pipefail` and the project's top as directory.
# shellcheck shell=bash

say() { printf '\n== %s\n' "$*"; }

fail() {
    printf '\n%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# dependencies COMMAND: the packages of packaging/dependencies, without those that another command alone needs.
dependencies() {
    awk -v command="$1" '{ sub(/#.*/, "") } NF == 1 || (NF == 2 && $2 == command) { print $1 }' packaging/dependencies
}

# missing PACKAGE...: those that are not installed.
missing() {
    local package
    for package in "$@"; do
        [[ $(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) == installed ]] || echo "$package"
    done
}

as_root() {
    if [[ $(id -u) == 0 ]]; then "$@"; else sudo "$@"; fi
}

# install_missing COMMAND: installs from Debian what is not there. Asks nothing.
install_missing() {
    local wanted packages
    mapfile -t wanted < <(dependencies "$1")
    mapfile -t packages < <(missing "${wanted[@]}")
    [[ ${#packages[@]} == 0 ]] && return
    say "Installing ${packages[*]}"
    as_root apt-get -q update
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y --no-install-recommends install "${packages[@]}"
}

# build PRESET [-DNAME=VALUE...] [-- TARGET...]: configures build/PRESET and builds it on every core.
build() {
    local preset=$1 options=()
    shift
    while [[ $# -gt 0 && $1 != -- ]]; do
        options+=("$1")
        shift
    done
    [[ $# -gt 0 ]] && shift
    cmake --preset "$preset" --log-level=NOTICE "${options[@]}"
    cmake --build "build/$preset" --parallel "$(nproc)" ${1:+--target "$@"}
}
