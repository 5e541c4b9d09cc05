#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Tests that an installation into an empty folder is complete, and that the installed daemon and kestractl work
together.
Usage: testinstall.py CMAKE BUILD_FOLDER"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path
from xml.etree import ElementTree

CMAKE, BUILD_FOLDER = sys.argv.pop(1), sys.argv.pop(1)
LIMIT_SECONDS = 20
SOURCES = Path(__file__).resolve().parents[2]

EXPECTED_FILES = """
bin/QuillKestraDaemon
bin/kestra-configurator
bin/kestractl
lib/systemd/user/quill-kestra-daemon.service
lib/udev/rules.d/70-quill-kestra-uinput.rules
libexec/quill-kestra-keyboard-rule
share/applications/org.quillkestra.Configurator.desktop
share/icons/hicolor/scalable/apps/org.quillkestra.Configurator.svg
share/man/man1/QuillKestraDaemon.1
share/man/man1/kestra-configurator.1
share/man/man1/kestractl.1
share/polkit-1/actions/org.quillkestra.keyboard-rule.policy
share/quill-kestra/Kestra.plist
share/quill-kestra/texts/en.qm
""".split()


class Installation(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        cls.prefix = Path(cls.folder.name) / "prefix"
        subprocess.run([CMAKE, "--install", BUILD_FOLDER, "--prefix", str(cls.prefix)], check=True, capture_output=True)

    def environment(self):
        home = Path(self.folder.name) / "home"
        home.mkdir(exist_ok=True)
        environment = {key: value for key, value in os.environ.items() if not key.startswith(("XDG_", "QUILL_"))}
        environment["HOME"] = str(home)
        return environment

    def kestractl(self, *arguments):
        return subprocess.run([str(self.prefix / "bin/kestractl"), *arguments], env=self.environment(),
                              capture_output=True, text=True, check=False, timeout=LIMIT_SECONDS)

    def test_every_file_is_there(self):
        self.assertEqual([name for name in EXPECTED_FILES if not (self.prefix / name).is_file()], [])

    def test_the_factory_settings_are_those_of_the_sources(self):
        # A program that runs in the build folder changes the copy there, so an installation must not take it.
        installed = self.prefix / "share/quill-kestra/Kestra.plist"
        self.assertEqual(installed.read_bytes(), (SOURCES / "resources/Kestra.plist").read_bytes())
        rules = "".join(path.read_text() for path in Path(BUILD_FOLDER).rglob("cmake_install.cmake"))
        self.assertIn('REGEX "/Kestra\\\\.plist$" EXCLUDE', rules)

    def test_nothing_of_the_build_folder_is_named(self):
        for path in self.prefix.rglob("*"):
            if path.suffix in {".desktop", ".service"}:
                self.assertNotIn(str(Path(BUILD_FOLDER).parent), path.read_text())

    def test_the_desktop_entry_starts_what_is_installed(self):
        entry = (self.prefix / "share/applications/org.quillkestra.Configurator.desktop").read_text().splitlines()
        program = next(line for line in entry if line.startswith("Exec=")).removeprefix("Exec=").split()[0]
        self.assertTrue(os.access(self.prefix / "bin" / program, os.X_OK))
        icon = next(line for line in entry if line.startswith("Icon=")).removeprefix("Icon=")
        self.assertTrue((self.prefix / f"share/icons/hicolor/scalable/apps/{icon}.svg").is_file())

    def unit(self, prefix=None):
        return ((prefix or self.prefix) / "lib/systemd/user/quill-kestra-daemon.service").read_text()

    def test_the_unit_starts_what_is_installed(self):
        self.assertIn(f"\nExecStart={self.prefix}/bin/QuillKestraDaemon\n", self.unit())

    def test_the_unit_of_a_package_names_the_place_after_unpacking(self):
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run([CMAKE, "--install", BUILD_FOLDER, "--prefix", "/opt/elsewhere"], check=True,
                           capture_output=True, env={**os.environ, "DESTDIR": folder})
            self.assertIn("\nExecStart=/opt/elsewhere/bin/QuillKestraDaemon\n",
                          self.unit(Path(folder) / "opt/elsewhere"))

    def policy(self):
        path = self.prefix / "share/polkit-1/actions/org.quillkestra.keyboard-rule.policy"
        return ElementTree.parse(path).find("action")

    def test_the_action_starts_the_installed_helper(self):
        path = Path(self.policy().find("annotate[@key='org.freedesktop.policykit.exec.path']").text)
        self.assertEqual(path, self.prefix / "libexec/quill-kestra-keyboard-rule")
        self.assertTrue(os.access(path, os.X_OK))

    def test_the_action_asks_for_an_administrator_each_time_and_in_an_active_session_alone(self):
        defaults = {element.tag: element.text for element in self.policy().find("defaults")}
        self.assertEqual(defaults, {"allow_any": "no", "allow_inactive": "no", "allow_active": "auth_admin"})

    def test_the_action_is_explained_in_every_language(self):
        language = "{http://www.w3.org/XML/1998/namespace}lang"
        for tag in ["description", "message"]:
            languages = [element.get(language) for element in self.policy().findall(tag)]
            self.assertEqual(languages, [None, "de", "fr", "es", "ja", "zh_CN"])

    @unittest.skipUnless(shutil.which("systemd-analyze"), "there is no systemd-analyze")
    def test_the_service_manager_understands_the_unit(self):
        text = self.unit()
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "quill-kestra-daemon.service"

            def verify(content):
                path.write_text(content)
                environment = {**os.environ, "XDG_RUNTIME_DIR": folder, "MANPATH": str(self.prefix / "share/man")}
                result = subprocess.run(["systemd-analyze", "verify", "--user", str(path)], env=environment,
                                        capture_output=True, text=True, check=False, timeout=LIMIT_SECONDS)
                # Minimal systems have no reader for manual pages.
                return [line for line in result.stderr.splitlines() if path.name in line and "'man " not in line]

            self.assertEqual(verify(text), [])
            self.assertNotEqual(verify(text.replace("Restart=always", "Restart=sometimes")), [])

    def test_the_daemon_stops_before_its_bus(self):
        # At a logout the service manager stops all units at once, except those that wait for another one.
        after = re.findall(r"^After=(.*)$", self.unit(), re.MULTILINE)
        self.assertLessEqual({"dbus.service", "dbus.socket"}, set(" ".join(after).split()))

    def test_the_unit_leaves_the_daemon_what_it_needs(self):
        settings = dict(line.split("=", 1) for line in self.unit().splitlines() if re.match(r"[A-Z]\w+=", line))
        self.assertEqual(settings["RestrictAddressFamilies"].split(), ["AF_UNIX", "AF_NETLINK"])  # for buses and udev
        self.assertNotIn("RestrictRealtime", settings)
        self.assertNotIn("PrivateDevices", settings)
        self.assertEqual(settings["NoNewPrivileges"], "yes")
        self.assertEqual(settings["Restart"], "always")
        self.assertEqual(settings["MemoryMax"], "512M")  # the largest waiting requests need about 350 MiB

    def test_the_udev_rule_gives_the_right_to_uinput_alone(self):
        path = self.prefix / "lib/udev/rules.d/70-quill-kestra-uinput.rules"
        self.assertLess(path.name, "73")  # the system's rules look for the tag at that number
        rules = [line for line in path.read_text().splitlines() if line and not line.startswith("#")]
        self.assertEqual(rules, ['ACTION!="remove", SUBSYSTEM=="misc", KERNEL=="uinput", '
                                 'OPTIONS+="static_node=uinput", TAG+="uaccess"'])
        if shutil.which("udevadm") and subprocess.run(["udevadm", "verify", "--help"], capture_output=True,
                                                      check=False).returncode == 0:
            subprocess.run(["udevadm", "verify", str(path)], check=True, capture_output=True)

    def test_the_installed_programs_find_their_resources(self):
        with subprocess.Popen([str(self.prefix / "bin/QuillKestraDaemon")], env=self.environment(),
                              stderr=subprocess.DEVNULL) as daemon:
            try:
                deadline = time.monotonic() + LIMIT_SECONDS
                while self.kestractl("status").returncode != 0:
                    self.assertLess(time.monotonic(), deadline, "the installed daemon does not answer")
                    time.sleep(0.05)
                self.assertEqual(self.kestractl("key", "A").stdout, "A: default key\n")
                self.assertEqual(self.kestractl("key", "A", "disable").stdout, "A: disabled\n")
                self.assertEqual(self.kestractl("key", "A", "default").stdout, "A: default key\n")
            finally:
                daemon.terminate()


if __name__ == "__main__":
    unittest.main()
