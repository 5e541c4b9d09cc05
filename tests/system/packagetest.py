#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Tests the Debian packages in the files of a Debian (debian.py): installation, upgrade, removal and purge.
Usage: packagetest.py PACKAGES_FOLDER    the folder in which tools/package has built"""

import json
import os
import re
import shutil
import sys
import tempfile
import unittest
from pathlib import Path

from debian import EXTENSION, LOWER_VERSION, make_lower_version, package_file, run, system_archive

PACKAGES = Path(sys.argv.pop(1)).resolve()
UNIT = "usr/lib/systemd/user/quill-kestra-daemon.service"
ENABLED = "etc/systemd/user/graphical-session.target.wants/quill-kestra-daemon.service"
SETTINGS = "home/user/.local/state/quill-kestra/settings.plist"
RULES = "etc/udev/rules.d"
RULE_OF_HELPER = "70-quill-kestra-01133-04660-00000000000000000007.rules"
RULES_OF_ADMINISTRATOR = ("70-quill-kestra-desk.rules", "70-quill-kestra-01133-04660-1desk.rules",
                          "70-quill-kestra-01133-04660-000000000000000000071.rules")

EXPECTED_FILES = {
    "quill-kestra": """
        usr/bin/kestra-configurator
        usr/share/applications/org.quillkestra.Configurator.desktop
        usr/share/icons/hicolor/scalable/apps/org.quillkestra.Configurator.svg
        usr/share/icons/hicolor/scalable/mimetypes/application-x-quill-kestra-macro.svg
        usr/share/icons/hicolor/scalable/mimetypes/application-x-quill-kestra-profile.svg
        usr/share/man/man1/kestra-configurator.1.gz
        usr/share/metainfo/org.quillkestra.Configurator.metainfo.xml
        usr/share/mime/packages/org.quillkestra.Configurator.xml
        usr/share/quill-kestra/help/en/index.html""",
    "quill-kestra-daemon": """
        usr/bin/QuillKestraDaemon
        usr/bin/kestractl
        usr/lib/systemd/user/quill-kestra-daemon.service
        usr/lib/udev/rules.d/70-quill-kestra-uinput.rules
        usr/libexec/quill-kestra-keyboard-rule
        usr/share/bash-completion/completions/kestractl
        usr/share/fish/vendor_completions.d/kestractl.fish
        usr/share/man/man1/QuillKestraDaemon.1.gz
        usr/share/man/man1/kestractl.1.gz
        usr/share/polkit-1/actions/org.quillkestra.keyboard-rule.policy
        usr/share/quill-kestra/Kestra.plist
        usr/share/quill-kestra/texts/de.qm
        usr/share/zsh/vendor-completions/_kestractl"""}

# Needs the Shell, which this Debian does not have; desktopstest.py installs it.
EXTENSION_FOLDER = "usr/share/gnome-shell/extensions/quill-kestra@quillkestra.org"
FILES_OF_EXTENSION = {"metadata.json", "extension.js", "__init__.js", "frontapplication.js"}


class Packages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        archive = system_archive(PACKAGES)
        cls.folder = Path(tempfile.mkdtemp(dir=archive.parent))
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.root = cls.folder / "root"
        cls.root.mkdir()
        run("tar", "-xf", archive, "-C", cls.root, "--exclude=./dev/*")
        for name in EXPECTED_FILES:
            shutil.copy(package_file(PACKAGES, name), cls.root / "tmp" / f"{name}.deb")
            make_lower_version(PACKAGES, name, cls.root / "tmp" / f"{name}-lower.deb")

    def in_system(self, *command):
        """Runs a command in the system, with a process list and devices of its own."""
        script = ('mount -t proc proc "$0/proc" && mount --rbind /dev "$0/dev" && '
                  'exec chroot "$0" "$@"')
        environment = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "DEBIAN_FRONTEND": "noninteractive", "LC_ALL": "C.UTF-8",
                       "HOME": "/root", "QT_QPA_PLATFORM": "offscreen"}
        return run("unshare", "--mount", "--pid", "--fork", "sh", "-c", script, self.root, *command, env=environment)

    def write(self, path, text):
        (self.root / path).parent.mkdir(parents=True, exist_ok=True)
        (self.root / path).write_text(text)

    def version(self):
        return self.in_system("dpkg-query", "-W", "-f", "${Version} ", "quill-kestra", "quill-kestra-daemon").split()

    def check_files_open(self, *handlers):
        """File managers know the types of the files, and these programs for them."""
        for name, kind in (("Game.KestraProfile", "profile"), ("Burst.KestraMacro", "macro")):
            self.write(f"tmp/{name}", "bplist00")
            shown = self.in_system("gio", "info", "-a", "standard::content-type,standard::icon", f"/tmp/{name}")
            self.assertEqual(f"standard::content-type: application/x-quill-kestra-{kind}\n" in shown, bool(handlers), shown)
            self.assertEqual(re.search(r"standard::icon: .*\bapplication-x-quill-kestra-" + kind + r"\b", shown)
                             is not None, bool(handlers), shown)
            opened = self.in_system("gio", "mime", f"application/x-quill-kestra-{kind}")
            self.assertEqual(re.findall(r"^\t(.*)$", opened, re.MULTILINE), [*handlers, *handlers], opened)

    def test_from_installation_to_purge(self):
        self.in_system("dpkg", "-i", "/tmp/quill-kestra-lower.deb", "/tmp/quill-kestra-daemon-lower.deb")
        self.assertEqual(self.version(), [LOWER_VERSION, LOWER_VERSION])
        self.assertTrue((self.root / ENABLED).is_symlink(), "the service is not enabled for users")
        self.write(SETTINGS, "settings of the user")
        self.write(f"{RULES}/{RULE_OF_HELPER}", "# rule of the helper\n")
        for name in RULES_OF_ADMINISTRATOR:
            self.write(f"{RULES}/{name}", "# rule of the administrator\n")

        self.in_system("dpkg", "-i", "/tmp/quill-kestra.deb", "/tmp/quill-kestra-daemon.deb")
        self.assertNotIn(LOWER_VERSION, self.version())
        self.check_files_open("org.quillkestra.Configurator.desktop")
        for package, files in EXPECTED_FILES.items():
            with self.subTest(package):
                self.assertEqual([name for name in files.split() if not (self.root / name).is_file()], [])
        for program in ("kestra-configurator", "QuillKestraDaemon", "kestractl"):
            with self.subTest(program):
                self.assertRegex(self.in_system(program, "--version"), r"\d+\.\d+\.\d+")
        unit = (self.root / UNIT).read_text()
        self.assertIn("ExecStart=/usr/bin/QuillKestraDaemon\n", unit)
        self.assertIn("ConditionUser=!@system\n", unit)
        self.assertIn("/usr/libexec/quill-kestra-keyboard-rule",
                      (self.root / "usr/share/polkit-1/actions/org.quillkestra.keyboard-rule.policy").read_text())
        self.assertEqual((self.root / "usr/libexec/quill-kestra-keyboard-rule").stat().st_mode & 0o7777, 0o755)

        self.in_system("dpkg", "-r", "quill-kestra", "quill-kestra-daemon")
        self.assertFalse((self.root / "usr/bin/QuillKestraDaemon").exists())
        self.check_files_open()
        self.assertTrue((self.root / RULES / RULE_OF_HELPER).exists())

        self.in_system("dpkg", "-P", "quill-kestra", "quill-kestra-daemon")
        self.assertFalse((self.root / RULES / RULE_OF_HELPER).exists(), "the helper's rule is still there")
        self.assertEqual({path.name for path in (self.root / RULES).iterdir()} & set(RULES_OF_ADMINISTRATOR),
                         set(RULES_OF_ADMINISTRATOR))
        self.assertFalse((self.root / ENABLED).is_symlink())
        self.assertEqual((self.root / SETTINGS).read_text(), "settings of the user")

    def test_extension_is_where_the_shell_looks_for_it(self):
        unpacked = self.folder / "extension"
        run("dpkg-deb", "-x", package_file(PACKAGES, EXTENSION), unpacked)
        folder = unpacked / EXTENSION_FOLDER
        self.assertEqual({path.name for path in folder.iterdir()}, FILES_OF_EXTENSION)
        metadata = json.loads((folder / "metadata.json").read_text())
        self.assertEqual(metadata["uuid"], "quill-kestra@quillkestra.org")
        self.assertLessEqual({"43", "44", "45", "46"}, set(metadata["shell-version"]))

    def test_no_file_names_the_build_folder(self):
        for name in (*EXPECTED_FILES, EXTENSION):
            unpacked = self.folder / f"{name}-files"
            run("dpkg-deb", "-x", package_file(PACKAGES, name), unpacked)
            guilty = [path for path in unpacked.rglob("*") if path.is_file()
                      and os.fsencode(PACKAGES.parent) in path.read_bytes()]
            self.assertEqual(guilty, [])


if __name__ == "__main__":
    unittest.main()
