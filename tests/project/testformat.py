#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Tests that tools/format checks and formats a tree, and reports a missing formatter. Usage: testformat.py REPOSITORY
"""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

REPOSITORY = Path(sys.argv.pop(1))
NO_FORMATTER = 77
GOOD = "int main()\n{\n    return 0;\n}\n"
BAD = "int main( ){return 0;}\n"


class Format(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = Path(folder.name)
        (self.tree / "tools").mkdir()
        shutil.copy(REPOSITORY / "tools/format", self.tree / "tools/format")
        shutil.copy(REPOSITORY / ".clang-format", self.tree / ".clang-format")
        (self.tree / "good.cpp").write_text(GOOD)

    def run_format(self, *arguments, path=None):
        return subprocess.run([str(self.tree / "tools/format"), *arguments], capture_output=True, text=True, check=False,
                              env={**os.environ, **({"PATH": path} if path else {})}).returncode

    def need_formatter(self):
        if self.run_format("--check") == NO_FORMATTER:
            self.skipTest("there is no clang-format 14")

    def test_a_formatted_tree_passes(self):
        self.need_formatter()
        self.assertEqual(self.run_format("--check"), 0)

    def test_a_bad_file_is_found_and_left_alone_by_the_check(self):
        self.need_formatter()
        (self.tree / "bad.h").write_text(BAD)
        self.assertEqual(self.run_format("--check"), 1)
        self.assertEqual((self.tree / "bad.h").read_text(), BAD)

    def test_a_bad_file_is_formatted(self):
        self.need_formatter()
        (self.tree / "bad.cpp").write_text(BAD)
        self.assertEqual(self.run_format(), 0)
        self.assertEqual((self.tree / "bad.cpp").read_text(), "int main()\n{\n    return 0;\n}\n")

    def test_what_a_build_made_is_left_alone(self):
        self.need_formatter()
        (self.tree / "build").mkdir()
        (self.tree / "build/made.cpp").write_text(BAD)
        self.assertEqual(self.run_format("--check"), 0)

    def test_another_formatter_does_not_count(self):
        folder = self.tree / "bin"
        folder.mkdir()
        for tool in ("bash", "dirname", "readlink", "env", "find"):
            (folder / tool).symlink_to(shutil.which(tool))
        self.assertEqual(self.run_format("--check", path=str(folder)), NO_FORMATTER)
        (folder / "clang-format").write_text("#!/bin/sh\necho clang-format version 15.0.1\n")
        (folder / "clang-format").chmod(0o755)
        self.assertEqual(self.run_format("--check", path=str(folder)), NO_FORMATTER)

    def test_other_arguments_are_refused(self):
        self.assertEqual(self.run_format("--all"), 2)


if __name__ == "__main__":
    unittest.main()
