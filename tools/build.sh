# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Configures and builds presets, the same way everywhere. Source it from the repository root.

# kestra_logged LOG COMMAND...: writes the command's output to the log, and shows the end of it only on failure.
kestra_logged() {
    local log=$1
    shift
    "$@" >>"$log" 2>&1 && return 0
    tail -n 60 "$log"
    echo "Failed (whole log: $log): $*" >&2
    return 1
}

# kestra_configure PRESET [cmake option...]
kestra_configure() {
    local preset=$1
    shift
    mkdir -p build
    if command -v ccache >/dev/null; then
        set -- -DCMAKE_CXX_COMPILER_LAUNCHER=ccache "$@"
    fi
    : >"build/$preset.log"
    kestra_logged "build/$preset.log" cmake --preset "$preset" "$@"
}

# kestra_build PRESET [target...]: builds everything when no target is given.
kestra_build() {
    local preset=$1 options=()
    shift
    [ $# -eq 0 ] || options=(--target "$@")
    echo "Building the preset $preset (log: build/$preset.log)"
    kestra_logged "build/$preset.log" cmake --build --preset "$preset" -j "$(nproc)" "${options[@]}"
}
