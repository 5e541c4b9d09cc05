#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Tests that tools/runtest runs a test like ctest, with simulated cmake and ctest. Usage: testruntest.py REPOSITORY"""

import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

REPOSITORY = Path(sys.argv.pop(1))


class RunTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = Path(folder.name).resolve()
        for name in ("tools", "path", "build/dev/tests/bin", "build/asan-ubsan/tests/bin"):
            (self.tree / name).mkdir(parents=True)
        shutil.copy(REPOSITORY / "tools/runtest", self.tree / "tools/runtest")
        shutil.copy(REPOSITORY / "CMakePresets.json", self.tree / "CMakePresets.json")
        for preset in ("dev", "asan-ubsan"):
            (self.tree / "build" / preset / "CTestTestfile.cmake").touch()
            self.make_program(f"build/{preset}/tests/bin/settingstests", 'echo "$0 $@ [$QT_QPA_PLATFORM] [$LSAN_OPTIONS]"; exit 3')
        self.make_program("path/cmake", f'echo "$@" >>{self.tree}/cmake.log')
        tests = {"tests": [{"name": "settingsstoretest", "properties": [{"name": "ENVIRONMENT", "value": ["QT_QPA_PLATFORM=offscreen"]}],
                            "command": ["env", f"{self.tree}/build/PRESET/tests/bin/settingstests", "settingsstoretest"]}]}
        (self.tree / "tests.json").write_text(json.dumps(tests))
        self.make_program("path/ctest", f'sed "s/PRESET/$2/" {self.tree}/tests.json')

    def make_program(self, path, script):
        program = self.tree / path
        program.write_text(f"#!/bin/sh\n{script}\n")
        program.chmod(0o755)

    def run_test(self, *arguments):
        environment = {**os.environ, "PATH": f"{self.tree}/path:{os.environ['PATH']}"}
        environment.pop("LSAN_OPTIONS", None)
        return subprocess.run([str(self.tree / "tools/runtest"), *arguments], capture_output=True, text=True, check=False,
                              env=environment)

    def test_the_program_of_the_test_is_built_and_run_with_its_environment(self):
        result = self.run_test("settingsstoretest", "loadsWhatWasSaved")
        self.assertEqual((self.tree / "cmake.log").read_text(), "--build --preset dev --target settingstests\n")
        self.assertIn("/build/dev/tests/bin/settingstests settingsstoretest loadsWhatWasSaved [offscreen]", result.stdout)
        self.assertEqual(result.returncode, 3)

    def test_a_preset_brings_the_options_of_its_sanitizers(self):
        result = self.run_test("--preset", "asan-ubsan", "settingsstoretest")
        self.assertIn(f"/build/asan-ubsan/tests/bin/settingstests settingsstoretest [offscreen] [suppressions={self.tree}/tools/lsan.supp",
                      result.stdout)

    def test_a_build_that_fails_is_the_result(self):
        self.make_program("path/cmake", "exit 7")
        result = self.run_test("settingsstoretest")
        self.assertEqual((result.returncode, result.stdout), (7, ""))

    def test_mistakes_are_explained(self):
        for arguments, message in (((), "Usage:"), (("--preset", "fast", "settingsstoretest"), "Usage:"),
                                   (("--preset", "base", "settingsstoretest"), "Usage:"), (("nosuchtest",), "no test nosuchtest")):
            with self.subTest(arguments):
                result = self.run_test(*arguments)
                self.assertIn(message, result.stderr)
                self.assertEqual((result.returncode, result.stdout), (2, ""))


if __name__ == "__main__":
    unittest.main()
