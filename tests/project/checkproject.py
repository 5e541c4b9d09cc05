#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs checks on the repository: checkproject.py ROOT [CHECK...]. Prints each finding; the exit code is 1 if any."""

import sys

from projectchecks import ALL_CHECKS, read_sources


def main(arguments):
    if not arguments or any(check not in ALL_CHECKS for check in arguments[1:]):
        print("usage: checkproject.py ROOT [" + "|".join(ALL_CHECKS) + "]...", file=sys.stderr)
        return 2
    sources = read_sources(arguments[0])
    # An empty list would pass every check.
    if len(sources) < 50:
        print(f"only {len(sources)} files under {arguments[0]}: this is not the repository", file=sys.stderr)
        return 2
    failed = False
    for name in arguments[1:] or ALL_CHECKS:
        findings = ALL_CHECKS[name](sources)
        failed = failed or bool(findings)
        print(f"{name}: {len(findings)} findings in {len(sources)} files")
        for finding in findings:
            print("  " + finding)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
