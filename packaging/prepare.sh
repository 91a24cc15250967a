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

# install_missing COMMAND: installs from Debian what is not there, and asks nothing. On other systems it names what is
# needed and leaves the rest to the build.
install_missing() {
    local wanted packages
    mapfile -t wanted < <(dependencies "$1")
    if ! command -v dpkg-query >/dev/null; then
        say "This is not Debian. Needed here is what Debian calls ${wanted[*]}"
        return
    fi
    mapfile -t packages < <(missing "${wanted[@]}")
    [[ ${#packages[@]} == 0 ]] && return
    say "Installing ${packages[*]}"
    as_root apt-get -q update
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y --no-install-recommends install "${packages[@]}"
}

# build PRESET [TARGET...]: configures build/PRESET and builds it, or the targets, on every core.
build() {
    local preset=$1
    shift
    cmake --preset "$preset" --log-level=NOTICE
    cmake --build "build/$preset" --parallel "$(nproc)" ${1:+--target "$@"}
}
