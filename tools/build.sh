# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Configuring and building a preset, the same way everywhere. To be sourced from the repository root.

# kestra_build PRESET [cmake option...]: the output is shown only when something fails.
kestra_build() {
    local preset=$1 log=build/$1.log
    shift
    mkdir -p build
    if command -v ccache >/dev/null; then
        set -- -DCMAKE_CXX_COMPILER_LAUNCHER=ccache "$@"
    fi
    echo "Building the preset $preset (log: $log)"
    if ! cmake --preset "$preset" "$@" >"$log" 2>&1 || ! cmake --build --preset "$preset" -j "$(nproc)" >>"$log" 2>&1; then
        tail -n 60 "$log"
        echo "Building the preset $preset failed." >&2
        return 1
    fi
}
