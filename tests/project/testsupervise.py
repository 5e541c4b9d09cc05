#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Tests that tools/supervise.sh restarts a program that ends, ends it when it is ended itself, and gives up on a
program that fails repeatedly."""

import os
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

SUPERVISE = sys.argv.pop(1)
LIMIT_SECONDS = 20


def is_alive(pid):
    try:
        os.kill(pid, 0)
    except ProcessLookupError:
        return False
    # A child that no process has waited for yet also counts as dead.
    return Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()[0] != "Z"


class Supervise(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.pid_file = Path(folder.name) / "pid"

    def supervise(self, *program):
        child = subprocess.Popen([SUPERVISE, str(self.pid_file), *program], stderr=subprocess.DEVNULL)
        self.addCleanup(self.end, child)
        return child

    @staticmethod
    def end(child):
        if child.poll() is None:
            child.terminate()
            child.wait(LIMIT_SECONDS)

    def wait_for(self, condition):
        deadline = time.monotonic() + LIMIT_SECONDS
        while time.monotonic() < deadline:
            result = condition()
            if result:
                return result
            time.sleep(0.02)
        return self.fail("nothing happened in time")

    def pid_other_than(self, other):
        def read():
            try:
                pid = int(self.pid_file.read_text())
            except FileNotFoundError:
                return None
            return pid if pid != other else None
        return self.wait_for(read)

    def test_starts_a_killed_program_again(self):
        self.supervise("sleep", "1000")
        first = self.pid_other_than(None)
        os.kill(first, signal.SIGKILL)
        second = self.pid_other_than(first)
        self.assertTrue(is_alive(second))
        self.assertFalse(is_alive(first))

    def test_ends_the_program_when_it_is_ended(self):
        supervisor = self.supervise("sleep", "1000")
        pid = self.pid_other_than(None)
        supervisor.terminate()
        self.assertEqual(supervisor.wait(LIMIT_SECONDS), 0)
        self.assertFalse(is_alive(pid))
        self.assertFalse(self.pid_file.exists())

    def test_gives_up_on_a_program_that_always_ends_at_once(self):
        supervisor = self.supervise("false")
        self.assertEqual(supervisor.wait(LIMIT_SECONDS), 1)
        self.assertFalse(self.pid_file.exists())


if __name__ == "__main__":
    unittest.main()
