#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""fuzz/corpus is what fuzz/make_corpus.py writes, and tools/fuzz refuses what it does not know before it builds.
Usage: testfuzz.py REPOSITORY"""

import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

REPOSITORY = Path(sys.argv.pop(1)).resolve()
sys.path.insert(0, str(REPOSITORY / "fuzz"))

import make_corpus  # noqa: E402


def files(folder):
    return {str(path.relative_to(folder)): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


class Corpus(unittest.TestCase):
    def test_is_what_the_script_writes(self):
        with tempfile.TemporaryDirectory() as folder:
            make_corpus.CORPUS = Path(folder)
            make_corpus.main()
            written = files(make_corpus.CORPUS)
        kept = files(REPOSITORY / "fuzz/corpus")
        self.assertEqual(sorted(kept), sorted(written))
        self.assertEqual([name for name in kept if kept[name] != written[name]], [])


class Arguments(unittest.TestCase):
    """In a tree that has the targets' names and nothing to build them with."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = Path(folder.name)
        (self.tree / "tools").mkdir()
        (self.tree / "fuzz/corpus/request").mkdir(parents=True)
        (self.tree / "fuzz/requestfuzz.cpp").touch()
        shutil.copy(REPOSITORY / "tools/fuzz", self.tree / "tools/fuzz")
        (self.tree / "tools/packages.sh").write_text("kestra_require() { echo accepted; exit 0; }\n")
        (self.tree / "tools/build.sh").touch()

    def run_fuzz(self, *arguments):
        return subprocess.run([str(self.tree / "tools/fuzz"), *arguments], capture_output=True, text=True, check=False)

    def test_accepts_limits_and_targets(self):
        for arguments in ([], ["request"], ["--seconds", "5"], ["--runs", "5", "request"]):
            with self.subTest(arguments=arguments):
                self.assertEqual(self.run_fuzz(*arguments).stdout, "accepted\n")

    def test_refuses_anything_else(self):
        for arguments in (["--help"], ["--seconds"], ["--runs", "0"], ["--runs", "many"], ["--runs", "5", "--seconds"],
                          ["other"], ["request", "--runs", "5"], ["../fuzz/request"], [""]):
            with self.subTest(arguments=arguments):
                result = self.run_fuzz(*arguments)
                self.assertEqual(result.returncode, 2)
                self.assertEqual(result.stdout, "")
                self.assertIn("Usage: tools/fuzz", result.stderr)


if __name__ == "__main__":
    unittest.main()
