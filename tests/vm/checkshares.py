#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks that the machines of ctest run every scenario of the folder exactly once, and none has an empty share.
Usage: checkshares.py CTEST BUILD_FOLDER"""

import json
import subprocess
import sys
from pathlib import Path

import shares

SCENARIOS = Path(__file__).resolve().parent / "scenarios"


def listed_shares(ctest, build_folder):
    """The words after --share in the commands of the tests, by the name of the test."""
    output = subprocess.run([ctest, "--test-dir", build_folder, "--show-only=json-v1", "-L", "^vm$"],
                            capture_output=True, text=True, check=True).stdout
    commands = {test["name"]: test.get("command", []) for test in json.loads(output)["tests"]}
    return {name: command[command.index("--share") + 1] for name, command in commands.items() if "--share" in command}


def main():
    names = shares.scenario_names(SCENARIOS)
    by_machine = {machine: shares.share_of(names, *shares.parse_share(share))
                  for machine, share in listed_shares(*sys.argv[1:]).items()}
    findings = shares.findings(names, by_machine)
    print(*findings, f"{len(names)} scenarios, {len(by_machine)} machines", sep="\n")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
