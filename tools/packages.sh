# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# The Debian and Ubuntu packages that ./run, ./test and the benchmarks need, and the function that installs the missing
# ones. Source this file.
# A row is "group package probe". A package counts as present when the command `probe` exists. A probe that begins with
# "/" is a pattern that a file must match instead. With the probe "-", dpkg must report the package as installed.
# "name|other" is one package under its names in several distributions. If apt knows none of them, the package is left
# out, and the part that needs it reports so.

kestra_packages='
build   g++             g++
build   cmake           cmake
build   ninja-build     ninja
build   qt6-base-dev    -
build   qt6-tools-dev   -
build   qt6-l10n-tools  -
build   pkgconf         pkg-config
build   libxcb1-dev     -
build   libxcb-xkb-dev  -
build   libxkbcommon-dev -
build   libxkbcommon-x11-dev -
build   libwayland-dev  -
build   libevdev-dev    -
build   libudev-dev     -
session dbus            dbus-run-session
display libqt6gui6      -
display fonts-dejavu-core -
display qt6-translations-l10n -
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
test    dbus            dbus-daemon
test    qemu-system-x86 qemu-system-x86_64
test    linux-image-amd64|linux-image-generic /boot/vmlinuz-*
test    busybox-static  busybox
test    cpio            cpio
test    git             git
test    udev            udevadm
test    systemd         systemd-analyze
test    appstream       appstreamcli
test    desktop-file-utils desktop-file-validate
test    shared-mime-info update-mime-database
test    zsh             zsh
test    fish            fish
package debhelper       dh
package dpkg-dev        dpkg-buildpackage
package lintian         lintian
package mmdebstrap      mmdebstrap
package e2fsprogs       -
fuzz    clang           clang++
fuzz    libclang-rt-dev|libclang-rt-14-dev /usr/lib/llvm-*/lib/clang/*/lib/linux/libclang_rt.fuzzer-*.a
bench   libbenchmark-dev -
bench   libplist-dev    -
'

kestra_is_present() { # package probe
    case $2 in
        -) ;;
        /*) compgen -G "$2" >/dev/null; return ;;
        *) command -v "$2" >/dev/null; return ;;
    esac
    # On newer systems a library may have its name for 64-bit times. dpkg-query fails when one of the two names is
    # unknown, which is usual and harmless.
    local states
    states=$(dpkg-query -W -f '${Status}\n' "$1" "$1t64" 2>/dev/null || true)
    [[ $states == *"install ok installed"* ]]
}

# Prints the first name in "name|other" that apt knows. If apt knows none, prints only a message on standard error.
kestra_known_name() { # package
    local name
    for name in ${1//|/ }; do
        if [ -n "$(apt-cache show --no-all-versions "$name" 2>/dev/null)" ]; then
            echo "$name"
            return
        fi
    done
    echo "There is no package ${1//|/ or } here; what needs it is left out." >&2
}

# kestra_require GROUP...: installs the missing packages of the groups, and names them before it does.
kestra_require() {
    local group package probe missing=()
    while read -r group package probe; do
        [[ " $* " == *" $group "* ]] || continue
        [[ " ${missing[*]} " == *" $package "* ]] && continue # a package may be in several groups
        kestra_is_present "$package" "$probe" || missing+=("$package")
    done < <(grep . <<<"$kestra_packages")
    [ ${#missing[@]} -eq 0 ] && return 0
    if ! command -v apt-get >/dev/null; then
        echo "These packages are missing and there is no apt-get to install them: ${missing[*]%%|*}" >&2
        return 1
    fi
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Please install as root: apt-get install ${missing[*]%%|*}" >&2
            return 1
        fi
        as_root=(sudo)
    fi
    echo "Installing what is missing: ${missing[*]%%|*}"
    "${as_root[@]}" apt-get update -q
    local known=()
    for package in "${missing[@]}"; do
        [[ $package == *"|"* ]] && package=$(kestra_known_name "$package")
        [ -z "$package" ] || known+=("$package")
    done
    [ ${#known[@]} -eq 0 ] && return 0
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${known[@]}"
}
