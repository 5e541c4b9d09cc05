#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the scenarios of desktop/scenarios.py on KWin and on GNOME Shell, with the packages installed, in a Debian with
both (debian.py), and checks the extension's entry for later versions of the Shell. See README.md.
Usage: desktopstest.py PACKAGES_FOLDER WORK_FOLDER [PART...]    parts: module kwin gnome (all when none is given)
Exit codes: 0 all is well, 1 a scenario failed, 77 this machine cannot use such a Debian."""

import os
import re
import shutil
import signal
import subprocess
import sys
import time
from pathlib import Path

from debian import EXTENSION, PACKAGES, desktops_folder, make_lower_version, package_file

HERE = Path(__file__).resolve().parent
# In a process list and file system of its own: its processes and changes are gone with it.
ENTER = """
root=$1 lower=$2 source=$3; shift 3
mount -t tmpfs tmpfs "$root" &&
    mkdir "$root/changes" "$root/work" "$root/root" &&
    mount -t overlay overlay -o "lowerdir=$lower,upperdir=$root/changes,workdir=$root/work" "$root/root" || exit 77
cd "$root/root" &&
    mount -t proc proc proc && mount --rbind /dev dev && mount -t tmpfs tmpfs run && mount -t tmpfs tmpfs tmp &&
    cp -r "$source" tmp/desktop && exec chroot . sh /tmp/desktop/prepare "$@"
"""
SKIPPED = 77
LIMIT_SECONDS = 600
PARTS = ("module", "kwin", "gnome")


def scenario_names(part):
    """The names of the scenarios that a part reports."""
    marks = {"module": None, "kwin": "scenario", "gnome": "scenario|scenario_of_gnome"}[part]
    text = (HERE / "desktop/scenarios.py").read_text(encoding="utf-8")
    return re.findall(rf"^    @(?:{marks})\n    def (\w+)\(", text, re.MULTILINE) if marks else []


def run_part(part, root, packages, work):
    """Runs a part in the Debian at `root`. Returns its exit code; its output is in a file of the work folder."""
    source, mount_point, log = work / "desktop", work / "mount", work / f"{part}.log"
    for folder in (source, mount_point):
        shutil.rmtree(folder, ignore_errors=True)
    mount_point.mkdir()
    shutil.copytree(HERE / "desktop", source)
    for name in (*PACKAGES, EXTENSION):
        shutil.copy(package_file(packages, name), source / f"{name}.deb")
    (source / "lower").mkdir()
    make_lower_version(packages, EXTENSION, source / "lower" / f"{EXTENSION}.deb")
    with open(log, "wb") as output:
        command = ["unshare", "--mount", "--pid", "--fork", "--kill-child", "--propagation", "private", "sh", "-c",
                   ENTER, "enter", mount_point, root, source, part]
        try:
            code = subprocess.run(command, stdout=output, stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL,
                                  check=False, timeout=LIMIT_SECONDS).returncode
        except subprocess.TimeoutExpired:
            code = 1
    text = log.read_text(encoding="utf-8", errors="replace")
    missing = [name for name in scenario_names(part) if f"\nok {name} (" not in text]
    if code == 0 and missing:
        print(f"these scenarios did not succeed: {', '.join(missing)}")
        code = 1
    if code not in (0, SKIPPED):
        print(f"the end of {log}:", *text.splitlines()[-120:], sep="\n")
    return code


def main():
    packages, work = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
    parts = sys.argv[3:] or PARTS
    # Ends the desktops as well.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    if os.geteuid() != 0 or not shutil.which("mmdebstrap"):
        print("desktops: skipped, they need root and mmdebstrap")
        return SKIPPED
    work.mkdir(parents=True, exist_ok=True)
    start = time.monotonic()
    root = desktops_folder(packages)
    results = [f"Debian {time.monotonic() - start:.0f} s"]
    codes = []
    for part in parts:
        start = time.monotonic()
        codes.append(run_part(part, root, packages, work))
        result = {0: "passed", SKIPPED: "skipped"}.get(codes[-1], "FAILED")
        results.append(f"{part} {result} {time.monotonic() - start:.0f} s")
    print("desktops:", ", ".join(results))
    if all(code == 0 for code in codes):
        return 0
    return SKIPPED if all(code in (0, SKIPPED) for code in codes) else 1


if __name__ == "__main__":
    sys.exit(main())
