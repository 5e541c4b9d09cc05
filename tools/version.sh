# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# The version of the project, which CMakeLists.txt alone has. Source it from the repository root.

# kestra_version [FILE]: the version that this CMakeLists.txt has.
kestra_version() {
    sed -n 's/^project(QuillKestra VERSION \([0-9.]*\) .*/\1/p' "${1:-CMakeLists.txt}"
}

# kestra_debian_changelog VERSION SECONDS: the changelog that a Debian package must have, for a version and a time since
# 1970. CHANGELOG.md lists the changes.
kestra_debian_changelog() {
    local maintainer
    maintainer=$(sed -n 's/^Maintainer: //p' debian/control)
    printf 'quill-kestra (%s) unstable; urgency=medium\n\n' "$1"
    printf '  * Version %s.\n\n' "$1"
    printf ' -- %s  %s\n' "$maintainer" "$(LC_ALL=C date --utc --date="@$2" '+%a, %d %b %Y %H:%M:%S +0000')"
}
