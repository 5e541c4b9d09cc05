# SPDX-License-Identifier: MIT
"""Distributes the scenarios among the machines. Every scenario of the folder is in exactly one share."""

import os
import re


def scenario_names(folder):
    return sorted(name.removesuffix(".txt") for name in os.listdir(folder) if name.endswith(".txt"))


def parse_share(text):
    """The number and the count in "2/4", the second share of four."""
    match = re.fullmatch(r"(\d+)/(\d+)", text)
    if not match or not 1 <= int(match[1]) <= int(match[2]):
        raise ValueError(f'"{text}" is not a share like 2/4')
    return int(match[1]), int(match[2])


def share_of(names, number, count):
    """The names of one share. The names are dealt like cards, in their order."""
    return sorted(names)[number - 1::count]


def findings(names, by_machine):
    """Problems with the shares of the machines, as texts: missing or repeated scenarios, and empty shares."""
    run = [name for share in by_machine.values() for name in share]
    texts = [f"no machine runs {name}" for name in sorted(set(names) - set(run))]
    texts += [f"{name} runs more than once" for name in sorted(set(run)) if run.count(name) > 1]
    texts += [f"{machine} has no scenario" for machine, share in by_machine.items() if not share]
    return texts
