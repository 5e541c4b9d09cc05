# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# The Debian and Ubuntu packages that ./run, ./test and the benchmarks need, and the function that installs the missing ones. To be sourced.
# A row is "group package probe": the package counts as present when the command `probe` is found, or, where the
# probe is "-", when dpkg says that it is installed.

kestra_packages='
build   g++             g++
build   cmake           cmake
build   ninja-build     ninja
build   qt6-base-dev    -
build   qt6-tools-dev   -
build   qt6-l10n-tools  -
build   pkgconf         pkg-config
build   libxcb1-dev     -
build   libwayland-dev  -
session dbus            dbus-run-session
display libqt6gui6      -
display fonts-dejavu-core -
tour    xvfb            Xvfb
tour    xdotool         xdotool
tour    imagemagick     import
test    python3         python3
test    libplist-dev    -
test    xvfb            Xvfb
test    xdotool         xdotool
test    openbox         openbox
test    at-spi2-core    -
test    sway            sway
test    qt6-wayland     -
bench   libbenchmark-dev -
bench   libplist-dev    -
'

kestra_is_present() { # package probe
    if [ "$2" != - ]; then
        command -v "$2" >/dev/null
        return
    fi
    # On newer systems a library may be installed under its name for 64-bit times. dpkg-query fails when one of the two
    # names is unknown, which is usual and says nothing.
    local states
    states=$(dpkg-query -W -f '${Status}\n' "$1" "$1t64" 2>/dev/null || true)
    [[ $states == *"install ok installed"* ]]
}

# kestra_require GROUP...: makes sure that every package of the groups is there; says what it installs before it does.
kestra_require() {
    local group package probe missing=()
    while read -r group package probe; do
        [[ " $* " == *" $group "* ]] || continue
        [[ " ${missing[*]} " == *" $package "* ]] && continue # a package may be in several groups
        kestra_is_present "$package" "$probe" || missing+=("$package")
    done < <(grep . <<<"$kestra_packages")
    [ ${#missing[@]} -eq 0 ] && return 0
    if ! command -v apt-get >/dev/null; then
        echo "These packages are missing and there is no apt-get to install them: ${missing[*]}" >&2
        return 1
    fi
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Please install as root: apt-get install ${missing[*]}" >&2
            return 1
        fi
        as_root=(sudo)
    fi
    echo "Installing what is missing: ${missing[*]}"
    "${as_root[@]}" apt-get update -q
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${missing[@]}"
}
