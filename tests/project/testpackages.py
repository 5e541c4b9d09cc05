#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Tests that tools/packages.sh installs missing packages, announces them first, and changes nothing on a complete
machine, and that debian/control agrees with other files. Scripts of the test replace the system's package tools. Usage: testpackages.py PACKAGES_SH"""

import json
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PACKAGES = sys.argv.pop(1)

# Like the real one, it fails when it does not know one of the names, and still reports the others.
DPKG_QUERY = """#!/bin/sh
status=0
for name in "$@"; do
    case $name in
        -*|*Status*) continue ;;
    esac
    if grep -qx "$name" "$FAKE/installed"; then echo "install ok installed"; else status=1; fi
done
exit $status
"""
RECORDER = """#!/bin/sh
echo "{name} $*" >>"$FAKE/calls"
echo "{name} output"
"""
SUDO = """#!/bin/sh
echo "sudo" >>"$FAKE/calls"
exec "$@"
"""
PROGRAMS = ("g++", "cmake", "ninja", "python3", "pkg-config", "dbus-run-session", "Xvfb", "xdotool", "import",
            "openbox", "sway", "dbus-daemon", "qemu-system-x86_64", "busybox", "cpio", "udevadm", "systemd-analyze", "appstreamcli", "git",
            "desktop-file-validate", "update-mime-database", "zsh", "fish",
            "dh", "dpkg-buildpackage", "lintian", "mmdebstrap")
LIBRARIES = ("qt6-base-dev", "qt6-tools-dev", "qt6-l10n-tools", "libqt6gui6", "fonts-dejavu-core", "libplist-dev",
             "libbenchmark-dev", "libxcb1-dev", "libxcb-xkb-dev", "libxkbcommon-dev",
             "libxkbcommon-x11-dev", "libwayland-dev", "libevdev-dev", "libudev-dev", "qt6-wayland",
             "at-spi2-core", "qt6-translations-l10n", "e2fsprogs")
# Knows the packages that the file "known" lists.
APT_CACHE = """#!/bin/sh
for name in "$@"; do
    if grep -qx "$name" "$FAKE/known"; then echo "Package: $name"; exit 0; fi
done
exit 100
"""
# The options under which ./run and ./test source the file. The kernels of this machine must not affect the test.
REQUIRE = """set -euo pipefail
source "$0"
kestra_packages=${kestra_packages//\\/boot\\//$FAKE/boot/}
kestra_require "$@"
"""
GROUPS = ("build", "session", "display", "tour", "test", "package", "bench")


class Packages(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.bin = self.folder / "bin"
        self.bin.mkdir()
        for tool in ("bash", "grep", "env", "cat"):
            (self.bin / tool).symlink_to(f"/usr/bin/{tool}")
        for program in PROGRAMS:
            self.script(program, "#!/bin/sh\n")
        self.script("dpkg-query", DPKG_QUERY)
        self.script("apt-get", RECORDER.format(name="apt-get"))
        self.script("id", "#!/bin/sh\necho ${FAKE_USER:-0}\n")
        self.script("apt-cache", APT_CACHE)
        self.installed(*LIBRARIES)
        self.known("linux-image-amd64")
        self.kernel = self.folder / "boot" / "vmlinuz-6.1.0"
        self.kernel.parent.mkdir()
        self.kernel.touch()

    def script(self, name, text):
        path = self.bin / name
        path.write_text(text)
        path.chmod(0o755)

    def installed(self, *names):
        (self.folder / "installed").write_text("".join(name + "\n" for name in names))

    def known(self, *names):
        (self.folder / "known").write_text("".join(name + "\n" for name in names))

    def require(self, *groups, **environment):
        return subprocess.run(
            [str(self.bin / "bash"), "-c", REQUIRE, PACKAGES, *groups],
            env={"PATH": str(self.bin), "FAKE": str(self.folder), **environment}, capture_output=True, text=True,
            check=False)

    def calls(self):
        path = self.folder / "calls"
        return path.read_text().splitlines() if path.exists() else []

    def test_a_complete_machine_is_left_alone(self):
        result = self.require(*GROUPS)
        self.assertEqual((result.returncode, result.stdout, result.stderr, self.calls()), (0, "", "", []))

    def test_the_packages_need_the_libraries_of_the_build(self):
        control = (Path(PACKAGES).parents[1] / "debian/control").read_text()
        needed = set(re.findall(r"^[ ]+([a-z0-9.+-]+)|^Build-Depends: ([a-z0-9.+-]+)",
                                re.search(r"^Build-Depends:.*\n(?: .*\n)*", control, re.MULTILINE)[0], re.MULTILINE))
        rows = re.findall(r"^build +(\S+)", Path(PACKAGES).read_text(), re.MULTILINE)
        # Each machine that builds packages has a compiler; debhelper is in the group "package".
        self.assertEqual({a or b for a, b in needed} - {"debhelper-compat"}, set(rows) - {"g++"})

    def test_the_extension_needs_a_shell_that_loads_it(self):
        project = Path(PACKAGES).parents[1]
        control = (project / "debian/control").read_text()
        limits = re.search(r"^Depends: gnome-shell \(>= (\d+)~\), gnome-shell \(<< (\d+)~\),", control, re.MULTILINE)
        self.assertIsNotNone(limits, control)
        versions = json.loads((project / "gnome-shell/metadata.json").read_text())["shell-version"]
        self.assertEqual([str(number) for number in range(*map(int, limits.groups()))], versions)

    def test_a_library_with_the_newer_name_counts(self):
        self.installed(*(name for name in LIBRARIES if name != "libqt6gui6"), "libqt6gui6t64")
        self.assertEqual(self.require(*GROUPS).stdout, "")
        self.assertEqual(self.calls(), [])

    def test_what_is_missing_is_said_and_then_installed(self):
        (self.bin / "Xvfb").unlink()
        self.installed(*(name for name in LIBRARIES if name != "qt6-base-dev"))
        result = self.require(*GROUPS)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(result.stdout.splitlines()[0], "Installing what is missing: qt6-base-dev xvfb")
        self.assertEqual(result.stdout.splitlines()[1], "apt-get output")
        self.assertEqual(len(self.calls()), 2)
        self.assertTrue(self.calls()[0].startswith("apt-get update"))
        self.assertTrue(self.calls()[1].endswith("--no-install-recommends qt6-base-dev xvfb"))

    def test_the_benchmarks_have_a_group_of_their_own(self):
        self.installed(*(name for name in LIBRARIES if name != "libbenchmark-dev"))
        self.assertEqual(self.require("build", "session", "display", "tour", "test").stdout, "")
        self.assertEqual(self.require("bench").stdout.splitlines()[0], "Installing what is missing: libbenchmark-dev")

    def test_other_groups_are_not_installed(self):
        (self.bin / "Xvfb").unlink()
        self.assertEqual(self.require("build", "session").stdout, "")
        self.assertEqual(self.calls(), [])

    def test_another_user_installs_with_sudo(self):
        (self.bin / "Xvfb").unlink()
        self.script("sudo", SUDO)
        self.assertEqual(self.require("tour", FAKE_USER="1000").returncode, 0)
        self.assertEqual(self.calls().count("sudo"), 2)

    def test_without_sudo_the_command_is_told(self):
        (self.bin / "Xvfb").unlink()
        result = self.require("tour", FAKE_USER="1000")
        self.assertEqual(result.returncode, 1)
        self.assertIn("apt-get install xvfb", result.stderr)
        self.assertEqual(self.calls(), [])

    def test_without_apt_the_missing_packages_are_told(self):
        (self.bin / "Xvfb").unlink()
        (self.bin / "apt-get").unlink()
        result = self.require("tour")
        self.assertEqual(result.returncode, 1)
        self.assertIn("xvfb", result.stderr)

    def test_a_kernel_has_another_name_elsewhere(self):
        self.kernel.unlink()
        self.known("linux-image-generic")
        self.assertEqual(self.require("test").returncode, 0)
        self.assertTrue(self.calls()[1].endswith("--no-install-recommends linux-image-generic"), self.calls())

    def test_a_kernel_that_cannot_be_had_is_left_out(self):
        self.kernel.unlink()
        (self.bin / "cpio").unlink()
        self.known()
        result = self.require("test")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("no package linux-image-amd64 or linux-image-generic here", result.stderr)
        self.assertTrue(self.calls()[1].endswith("--no-install-recommends cpio"), self.calls())


if __name__ == "__main__":
    unittest.main()
