#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Measures the time from the configurator's start to a painted window with enabled controls, and its memory use at that
point, in comparison with an empty window with as many buttons. Both programs run in turn on a virtual display, the
configurator with a real daemon on a private session bus.

Usage: startup.py FOLDER_OF_THE_EXECUTABLES [--runs N] [--json FILE] [--precedence]
"""

import argparse
import json
import os
import select
import shutil
import signal
import statistics
import subprocess
import sys
import tempfile
import time
from contextlib import ExitStack, contextmanager
from pathlib import Path

READY_LIMIT_SECONDS = 20


@contextmanager
def process(command, **options):
    """A process that is ended at the end of the block."""
    child = subprocess.Popen(command, **options)
    try:
        yield child
    finally:
        child.send_signal(signal.SIGTERM)
        try:
            child.wait(timeout=10)
        except subprocess.TimeoutExpired:
            child.kill()
            child.wait()


def first_line(stream, limit_seconds, what):
    """The next line of `stream`, or an error when none arrives in time."""
    if not select.select([stream], [], [], limit_seconds)[0]:
        raise SystemExit(f"{what}: nothing within {limit_seconds} s")
    line = stream.readline().decode().strip()
    if not line:
        raise SystemExit(f"{what}: ended without a word")
    return line


@contextmanager
def virtual_display():
    reading, writing = os.pipe()
    # Without -noreset the server restarts whenever its last client leaves. The start of the next program would wait for
    # that, the longer the faster the previous program ends.
    command = ["Xvfb", "-displayfd", str(writing), "-screen", "0", "1600x1000x24", "-nolisten", "tcp", "-noreset"]
    with process(command, pass_fds=[writing], stderr=subprocess.DEVNULL):
        os.close(writing)
        with os.fdopen(reading, "rb") as stream:
            yield ":" + first_line(stream, 10, "Xvfb")


@contextmanager
def session_bus():
    command = ["dbus-daemon", "--session", "--nofork", "--print-address"]
    with process(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL) as bus:
        yield first_line(bus.stdout, 10, "dbus-daemon")


def proportional_set_kilobytes(pid):
    for line in Path(f"/proc/{pid}/smaps_rollup").read_text().splitlines():
        if line.startswith("Pss:"):
            return int(line.split()[1])
    raise SystemExit(f"no Pss line for process {pid}")


def measure(executable, environment):
    """One start as (milliseconds until "ready", PSS in kB at that moment)."""
    started = time.monotonic()
    with process([executable], env=environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL) as child:
        line = first_line(child.stdout, READY_LIMIT_SECONDS, executable.name)
        milliseconds = (time.monotonic() - started) * 1000
        if line != "ready":
            raise SystemExit(f"{executable.name}: said {line!r} instead of ready")
        return milliseconds, proportional_set_kilobytes(child.pid)


def wait_for_daemon(kestractl, environment):
    deadline = time.monotonic() + 10
    while subprocess.run([kestractl, "status"], env=environment, capture_output=True, check=False).returncode:
        if time.monotonic() > deadline:
            raise SystemExit("the daemon does not answer")
        time.sleep(0.1)


def private_environment(folder, binaries):
    """An environment with private settings and resources, in which the user's own are neither read nor written."""
    environment = {key: value for key, value in os.environ.items() if not key.startswith(("XDG_", "QT_", "KESTRA_"))}
    environment.pop("WAYLAND_DISPLAY", None)
    for name in ("STATE_HOME", "DATA_HOME", "CONFIG_HOME", "CACHE_HOME", "RUNTIME_DIR"):
        path = folder / name.lower()
        path.mkdir(mode=0o700)
        environment["XDG_" + name] = str(path)
    shutil.copytree(binaries / "resources", folder / "resources")
    environment.update(HOME=str(folder), QUILL_KESTRA_RESOURCES=str(folder / "resources"), QT_QPA_PLATFORM="xcb",
                       LC_ALL="C.UTF-8", KESTRA_BENCH_READY="1", KESTRA_SPARE_DAEMONS="1")
    return environment


def run(binaries, runs):
    configurator, empty = binaries / "kestra-configurator", binaries / "bench_emptywindow"
    for executable in (configurator, empty, binaries / "QuillKestraDaemon", binaries / "kestractl"):
        if not executable.exists():
            raise SystemExit(f"{executable} is missing: build with -DKESTRA_BUILD_BENCH=ON")
    results = {configurator: [], empty: []}
    with ExitStack() as stack:
        folder = Path(stack.enter_context(tempfile.TemporaryDirectory()))
        environment = private_environment(folder, binaries)
        environment["DISPLAY"] = stack.enter_context(virtual_display())
        environment["DBUS_SESSION_BUS_ADDRESS"] = stack.enter_context(session_bus())
        stack.enter_context(process([binaries / "QuillKestraDaemon"], env=environment, stderr=subprocess.DEVNULL))
        wait_for_daemon(binaries / "kestractl", environment)
        for number in range(runs + 1):
            for executable in (configurator, empty):
                result = measure(executable, environment)
                # The first round fills the disk caches and is not counted.
                if number > 0:
                    results[executable].append(result)
    return {executable.name: {"startMs": [round(ms, 1) for ms, _ in rows], "pssKb": [kb for _, kb in rows]}
            for executable, rows in results.items()}


def summary(results):
    names = list(results)
    medians = {name: (statistics.median(results[name]["startMs"]), statistics.median(results[name]["pssKb"]))
               for name in names}
    for name, (milliseconds, kilobytes) in medians.items():
        spread = f"{min(results[name]['startMs']):.0f}-{max(results[name]['startMs']):.0f}"
        print(f"{name:22} start {milliseconds:7.1f} ms ({spread})   PSS {kilobytes / 1024:6.1f} MB")
    print(f"{'ratio':22} start {medians[names[0]][0] / medians[names[1]][0]:7.2f}"
          f"                PSS {medians[names[0]][1] / medians[names[1]][1]:6.2f}")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("binaries", type=Path, help="folder of the executables, for example build/release/bin")
    parser.add_argument("--runs", type=int, default=15, help="counted runs of each program (default 15)")
    parser.add_argument("--json", type=Path, help="also write every measurement to this file")
    parser.add_argument("--precedence", action="store_true",
                        help="run all that is measured, with the display and the bus, ahead of other programs "
                             "(real-time scheduling, which root may ask for)")
    arguments = parser.parse_args()
    if arguments.precedence:
        os.sched_setscheduler(0, os.SCHED_RR, os.sched_param(1))
    results = run(arguments.binaries.resolve(), arguments.runs)
    print(f"{arguments.runs} runs each, in turn; medians:")
    summary(results)
    if arguments.json:
        arguments.json.write_text(json.dumps(results, indent=1) + "\n")


if __name__ == "__main__":
    sys.exit(main())
