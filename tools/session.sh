#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# On a session bus, starts the daemon if none answers, then the configurator. A daemon started here is kept running for
# as long as the configurator runs.
# Usage: session.sh FOLDER_OF_THE_EXECUTABLES
set -euo pipefail

bin=$1
folder=$(mktemp -d)
supervisor=
finish() {
    if [ -n "$supervisor" ]; then
        kill -TERM "$supervisor" 2>/dev/null || true
        wait "$supervisor" 2>/dev/null || true
    fi
    rm -rf "$folder"
}
trap finish EXIT

daemon_answers() { "$bin/kestractl" profile list >/dev/null 2>&1; }

if daemon_answers; then
    echo "A daemon is already running; using it."
else
    echo "No daemon answers; starting one."
    "$(dirname "$0")/supervise.sh" "$folder/daemon.pid" "$bin/QuillKestraDaemon" &
    supervisor=$!
    for _ in $(seq 100); do
        daemon_answers && break
        sleep 0.1
    done
fi
"$bin/kestractl" status
"$bin/kestra-configurator"
