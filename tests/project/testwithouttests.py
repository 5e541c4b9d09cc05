#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Tests that a build without tests, the one for installation, contains nothing that only serves tests: the variable that
keeps the configurator from ending daemons.
Usage: testwithouttests.py CMAKE SOURCE_FOLDER"""

import json
import shlex
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

CMAKE, SOURCES = sys.argv.pop(1), Path(sys.argv.pop(1)).resolve()
VARIABLE = "KESTRA_SPARE_DAEMONS"
READER = SOURCES / "app/application.cpp"
CODE = ("*.cpp", "*.h", "*.inc", "*.in")
FOLDERS_WITHOUT_TESTS = ("app", "base", "cli", "daemon", "daemonlink", "keys", "lighting", "macros", "platform", "profiles")


class WithoutTests(unittest.TestCase):
    def compiled_reader(self, with_tests):
        """The object file of the one file that reads the variable."""
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run([CMAKE, "-S", str(SOURCES), "-B", folder, f"-DKESTRA_BUILD_TESTS={with_tests}",
                            "-DKESTRA_PRECOMPILE=OFF", "-DCMAKE_BUILD_TYPE=Debug"], check=True, capture_output=True)
            commands = json.loads((Path(folder) / "compile_commands.json").read_text())
            entry = next(each for each in commands if Path(each["file"]) == READER)
            words = shlex.split(entry["command"])
            output = Path(folder) / "reader.o"
            words[words.index("-o") + 1] = str(output)
            subprocess.run(words, cwd=entry["directory"], check=True)
            return output.read_bytes()

    def test_one_file_alone_reads_the_variable(self):
        files = [path for name in FOLDERS_WITHOUT_TESTS for pattern in CODE for path in (SOURCES / name).rglob(pattern)]
        self.assertEqual([path for path in files if VARIABLE in path.read_text()], [READER])

    def test_only_a_build_with_tests_has_the_variable(self):
        having = [with_tests for with_tests in ("ON", "OFF") if VARIABLE.encode() in self.compiled_reader(with_tests)]
        self.assertEqual(having, ["ON"])


if __name__ == "__main__":
    unittest.main()
