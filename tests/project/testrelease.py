#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Tests tools/release in a repository of its own, in which a script replaces the build of the packages.
Usage: testrelease.py SOURCES"""

import datetime
import os
import re
import shutil
import subprocess
import sys
import tarfile
import tempfile
import unittest
from pathlib import Path

SOURCES = Path(sys.argv.pop(1))
VERSION = "1.4.2"
# It shows where it was built from: a package needs the changelog that the archive brings.
PACKAGE = """#!/bin/sh
cd "$(dirname "$0")/.."
[ -e .git ] && exit 1
[ -e broken ] && { echo "it does not build"; exit 1; }
mkdir -p "$1"
cp debian/changelog "$1/quill-kestra_test.deb"
"""


class Release(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name) / "repository"
        self.root.mkdir()
        self.result = self.root / f"build/release-{VERSION}"
        for name in ("tools/release", "tools/sourcearchive", "tools/version.sh", "debian/control"):
            (self.root / name).parent.mkdir(exist_ok=True)
            shutil.copy(SOURCES / name, self.root / name)
        self.write("tools/package", PACKAGE).chmod(0o755)
        self.write(".gitignore", "/build*/\n")
        self.write("CMakeLists.txt", f"project(QuillKestra VERSION {VERSION} LANGUAGES CXX\n")
        self.write("CHANGELOG.md", f"# Changelog\n\n## [{VERSION}] - unreleased\n\n- New.\n\n## [1.4.1] - 2026-01-02\n")
        self.git("init", "-q", "-b", "main")
        self.git("config", "user.name", "Author")
        self.git("config", "user.email", "author@quillkestra.example")
        self.commit()

    def write(self, name, text):
        path = self.root / name
        path.write_text(text)
        return path

    def git(self, *words):
        return subprocess.run(["git", *words], cwd=self.root, check=True, capture_output=True, text=True).stdout

    def commit(self):
        self.git("add", "-A")
        self.git("commit", "-q", "-m", "all")

    def release(self, *words):
        return subprocess.run([self.root / "tools/release", *words], capture_output=True, text=True, check=False)

    def state(self):
        return self.git("rev-parse", "HEAD"), self.git("tag", "--list"), self.git("status", "--porcelain")

    def assert_result(self):
        """The archive has the day of the release, its packages come from it, and the checksums are right."""
        with tarfile.open(self.result / f"quill-kestra-{VERSION}.tar.gz") as archive:
            text = {name: archive.extractfile(f"quill-kestra-{VERSION}/{name}").read().decode()
                    for name in ("CHANGELOG.md", "debian/changelog")}
        heading = re.search(r"^## .*", text["CHANGELOG.md"], re.MULTILINE).group()
        self.assertIn(heading, {f"## [{VERSION}] - {day.isoformat()}" for day in self.days})
        self.assertIn("## [1.4.1] - 2026-01-02", text["CHANGELOG.md"])
        self.assertTrue(text["debian/changelog"].startswith(f"quill-kestra ({VERSION}) "))
        self.assertEqual((self.result / "quill-kestra_test.deb").read_text(), text["debian/changelog"])
        checked = subprocess.run(["sha256sum", "--check", "SHA256SUMS"], cwd=self.result, check=True,
                                 capture_output=True, text=True).stdout.split("\n")
        self.assertEqual(sorted(filter(None, checked)),
                         [f"quill-kestra-{VERSION}.tar.gz: OK", "quill-kestra_test.deb: OK"])

    @property
    def days(self):
        now = datetime.datetime.now(datetime.timezone.utc)
        return {now.date(), (now - datetime.timedelta(hours=1)).date()}

    def archive(self, folder):
        """The bytes of a source archive."""
        subprocess.run([self.root / "tools/sourcearchive", folder], check=True, capture_output=True)
        return (folder / f"quill-kestra-{VERSION}.tar.gz").read_bytes()

    def test_two_archives_of_a_commit_are_the_same(self):
        first = self.archive(self.root.parent / "first")
        (self.root / "CMakeLists.txt").touch()
        self.write("not-committed", "text")
        umask = os.umask(0o077)
        self.addCleanup(os.umask, umask)
        self.assertEqual(self.archive(self.root.parent / "second"), first)

    @unittest.skipUnless(os.getuid() == 0, "only root can give files away")
    def test_root_can_archive_the_repository_of_another_user(self):
        subprocess.run(["chown", "-R", "65534:65534", self.root], check=True)
        self.assertTrue(self.archive(self.root.parent / "result"))

    def test_a_dry_run_makes_everything_and_changes_nothing(self):
        before = self.state()
        result = self.release("--dry-run")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assert_result()
        self.assertEqual(self.state(), before)

    def test_a_release_adds_a_commit_and_a_tag(self):
        before = self.git("rev-parse", "HEAD").strip()
        result = self.release()
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assert_result()
        self.assertEqual(self.git("rev-parse", "HEAD~1").strip(), before)
        self.assertEqual(self.git("rev-parse", "HEAD"), self.git("rev-parse", f"v{VERSION}^{{commit}}"))
        self.assertEqual(self.git("log", "-1", "--format=%an <%ae> %s").strip(),
                         f"Author <author@quillkestra.example> release: {VERSION}")
        self.assertNotIn("unreleased", (self.root / "CHANGELOG.md").read_text())
        self.assertEqual(self.git("status", "--porcelain"), "")
        # The same version is never released twice.
        self.assertNotEqual(self.release().returncode, 0)

    def assert_refused(self, reason):
        before = self.state()
        result = self.release()
        self.assertNotEqual(result.returncode, 0)
        self.assertIn(reason, result.stdout + result.stderr)
        self.assertEqual(self.state(), before)
        self.assertFalse((self.result / "SHA256SUMS").exists())

    def test_changes_that_are_not_committed_are_refused(self):
        self.write("CMakeLists.txt", f"project(QuillKestra VERSION {VERSION} LANGUAGES CXX\n# changed\n")
        self.assert_refused("not committed")

    def test_a_changelog_of_another_version_is_refused(self):
        self.write("CHANGELOG.md", "# Changelog\n\n## [1.4.3] - unreleased\n")
        self.commit()
        self.assert_refused("heading")

    def test_a_released_version_is_refused(self):
        self.git("tag", f"v{VERSION}")
        self.assert_refused("already")

    def test_an_archive_that_does_not_build_is_not_tagged(self):
        self.write("broken", "")
        self.commit()
        self.assert_refused("it does not build")


if __name__ == "__main__":
    unittest.main()
