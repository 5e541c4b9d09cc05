#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Tests the parts of the runner that need no machine: the shares, the limit of a machine's own time, and the verdict.
"""

import subprocess
import sys
import unittest

import owntime
import run
import shares

NAMES = [f"scenario-{number:02}" for number in range(54)]
LONG_S = 60  # longer than every limit here
BUSY = [sys.executable, "-c", "while True: pass"]


def shares_of(names, count):
    return {f"vm_{number}": shares.share_of(names, number, count) for number in range(1, count + 1)}


class Shares(unittest.TestCase):
    def test_every_scenario_is_in_one_share(self):
        for count in range(1, len(NAMES) + 1):
            self.assertEqual(shares.findings(NAMES, shares_of(NAMES, count)), [])

    def test_shares_differ_by_one_scenario_at_most(self):
        sizes = {len(share) for share in shares_of(NAMES, 4).values()}
        self.assertLessEqual(max(sizes) - min(sizes), 1)

    def test_finds_a_share_that_no_machine_has(self):
        by_machine = shares_of(NAMES[:8], 4)
        del by_machine["vm_3"]
        self.assertEqual(shares.findings(NAMES[:8], by_machine),
                         ["no machine runs scenario-02", "no machine runs scenario-06"])

    def test_finds_a_scenario_that_runs_twice(self):
        self.assertEqual(shares.findings(["a", "b"], {"vm_1": ["a", "b"], "vm_2": ["b"]}), ["b runs more than once"])

    def test_finds_an_empty_share(self):
        self.assertEqual(shares.findings(["a"], shares_of(["a"], 2)), ["vm_2 has no scenario"])

    def test_refuses_what_is_not_a_share(self):
        for text in ["0/4", "5/4", "1/0", "1", "a/b", ""]:
            with self.assertRaises(ValueError):
                shares.parse_share(text)
        self.assertEqual(shares.parse_share("2/4"), (2, 4))


class OwnTime(unittest.TestCase):
    def started(self, command):
        process = subprocess.Popen(command)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def test_ends_a_process_that_uses_the_processor_for_too_long(self):
        process = self.started(BUSY)
        with owntime.OwnTimeLimit(process, limit_s=0.2, interval_s=0.02) as limit:
            process.wait(LONG_S)
        self.assertTrue(limit.is_over)

    def test_ends_a_process_that_sleeps_for_too_long(self):
        process = self.started(["sleep", str(2 * LONG_S)])
        with owntime.OwnTimeLimit(process, limit_s=0.2, interval_s=0.02) as limit:
            process.wait(LONG_S)
        self.assertTrue(limit.is_over)

    def test_time_without_a_processor_is_not_its_own(self):
        process = self.started(["sh", "-c", "kill -STOP $$"])  # suspended: it can neither run nor sleep
        while "T" not in owntime.thread_states(process.pid):
            pass
        with owntime.OwnTimeLimit(process, limit_s=0.2, interval_s=0.02) as limit:
            with self.assertRaises(subprocess.TimeoutExpired):
                process.wait(1)
        self.assertFalse(limit.is_over)

    def test_leaves_a_process_alone_that_ends(self):
        process = self.started(["true"])
        with owntime.OwnTimeLimit(process, limit_s=LONG_S, interval_s=0.02) as limit:
            process.wait(LONG_S)
        self.assertFalse(limit.is_over)


class Verdict(unittest.TestCase):
    ALL_WELL = ["ok one (12 ms)", "ok two (3 ms)", "done, 0 failed of 2"]

    def test_all_well(self):
        self.assertEqual(run.problems(self.ALL_WELL, ["two", "one"], False), [])

    def test_scenario_failed(self):
        found = ["ok one (12 ms)", "failed two (3 ms)", "  line 3 (start): no", "done, 1 failed of 2"]
        self.assertEqual(run.problems(found, ["one", "two"], False), ["not everything succeeded"])

    def test_did_not_come_to_the_end(self):
        self.assertEqual(run.problems(self.ALL_WELL[:2], ["one", "two"], False),
                         ["the virtual machine did not come to the end"])

    def test_scenario_left_out(self):
        self.assertEqual(run.problems(self.ALL_WELL, ["one", "three", "two"], False),
                         ["it has 3 scenarios and ran 2; not run: ['three']"])

    def test_no_scenario_at_all(self):
        self.assertEqual(run.problems(["done, 0 failed of 0"], [], False), ["it has no scenario"])

    def test_measuring_without_scenarios(self):
        self.assertEqual(run.problems(["latency raw p50 1 us", "done, 0 failed of 0"], [], True), [])

    def test_nothing_measured(self):
        self.assertEqual(run.problems(["done, 0 failed of 0"], [], True), ["it measured nothing"])


if __name__ == "__main__":
    unittest.main()
