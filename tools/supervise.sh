#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Keeps a program running: restarts it whenever it ends, until SIGTERM ends this script. Gives up when the program ends
# at once five times in a row. Usage: supervise.sh PIDFILE PROGRAM [ARGUMENT...]
set -uo pipefail

pid_file=$1
shift
child=
# shellcheck disable=SC2317  # called by the trap
stop() {
    trap '' TERM
    [ -n "$child" ] && kill -TERM "$child" 2>/dev/null && wait "$child" 2>/dev/null
    rm -f "$pid_file"
    exit 0
}
trap stop TERM INT

quick_ends=0
while [ "$quick_ends" -lt 5 ]; do
    started=$SECONDS
    "$@" &
    child=$!
    echo "$child" >"$pid_file.new" && mv "$pid_file.new" "$pid_file"
    wait "$child"
    status=$?
    child=
    echo "supervise: $(basename "$1") ended with status $status" >&2
    if [ $((SECONDS - started)) -lt 2 ]; then
        quick_ends=$((quick_ends + 1))
    else
        quick_ends=0
    fi
    sleep 0.3
done
echo "supervise: $(basename "$1") ended at once five times; giving up" >&2
rm -f "$pid_file"
exit 1
