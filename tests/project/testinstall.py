#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Tests that an installation into an empty folder is complete, and that the installed daemon and kestractl work
together.
Usage: testinstall.py CMAKE BUILD_FOLDER"""

import os
import pty
import re
import select
import shlex
import shutil
import signal
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
share/bash-completion/completions/kestractl
share/fish/vendor_completions.d/kestractl.fish
share/icons/hicolor/scalable/apps/org.quillkestra.Configurator.svg
share/icons/hicolor/scalable/mimetypes/application-x-quill-kestra-macro.svg
share/icons/hicolor/scalable/mimetypes/application-x-quill-kestra-profile.svg
share/man/man1/QuillKestraDaemon.1
share/man/man1/kestra-configurator.1
share/gnome-shell/extensions/quill-kestra@quillkestra.org/__init__.js
share/gnome-shell/extensions/quill-kestra@quillkestra.org/extension.js
share/gnome-shell/extensions/quill-kestra@quillkestra.org/frontapplication.js
share/gnome-shell/extensions/quill-kestra@quillkestra.org/metadata.json
share/man/man1/kestractl.1
share/metainfo/org.quillkestra.Configurator.metainfo.xml
share/mime/packages/org.quillkestra.Configurator.xml
share/polkit-1/actions/org.quillkestra.keyboard-rule.policy
share/quill-kestra/Kestra.plist
share/quill-kestra/texts/en.qm
share/zsh/site-functions/_kestractl
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

    def test_the_desktop_entry_opens_a_file_of_each_type(self):
        entry = (self.prefix / "share/applications/org.quillkestra.Configurator.desktop").read_text().splitlines()
        self.assertIn("Exec=kestra-configurator %f", entry)
        opened = next(line for line in entry if line.startswith("MimeType=")).removeprefix("MimeType=")
        types = ElementTree.parse(self.prefix / "share/mime/packages/org.quillkestra.Configurator.xml").getroot()
        self.assertEqual(opened, "".join(each.get("type") + ";" for each in types))

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

    @unittest.skipUnless(shutil.which("appstreamcli"), "there is no appstreamcli")
    def test_software_centres_understand_the_description(self):
        path = self.prefix / "share/metainfo/org.quillkestra.Configurator.metainfo.xml"

        def findings(path):
            result = subprocess.run(["appstreamcli", "validate", "--pedantic", "--no-net", str(path)],
                                    capture_output=True, text=True, check=False, timeout=LIMIT_SECONDS)
            return re.findall(r"^[EWIP]: .*", result.stdout, re.MULTILINE)

        # The name on the bus has an upper-case letter, and the desktop entry must have the same name. AppStream 1.0
        # prefers an element "developer" with an ID, which AppStream 0.16 of Debian 12 does not know.
        expected = {"cid-contains-uppercase-letter", "developer-name-tag-deprecated", "developer-id-missing"}
        self.assertEqual([finding for finding in findings(path) if expected.isdisjoint(finding.split())], [])
        bad = Path(self.folder.name) / path.name
        bad.write_text(path.read_text().replace("<image>", "<picture>").replace("</image>", "</picture>"))
        self.assertTrue(any("picture" in finding or "screenshot" in finding for finding in findings(bad)))

    def test_the_description_names_the_installed_desktop_entry_and_this_version(self):
        root = ElementTree.parse(self.prefix / "share/metainfo/org.quillkestra.Configurator.metainfo.xml").getroot()
        entry = root.find("launchable[@type='desktop-id']").text
        self.assertTrue((self.prefix / "share/applications" / entry).is_file())
        release = root.find("releases/release")
        self.assertEqual(f"kestractl {release.get('version')}\n", self.kestractl("--version").stdout)
        self.assertRegex(release.get("date"), r"^\d{4}-\d\d-\d\d$")
        self.assertGreaterEqual(len(root.findall("screenshots/screenshot/image")), 2)

    def test_the_desktop_entry_has_every_language(self):
        path = self.prefix / "share/applications/org.quillkestra.Configurator.desktop"
        for key in ["GenericName", "Comment", "Keywords"]:
            found = re.findall(rf"^{key}(?:\[(\w+)\])?=.", path.read_text(), re.MULTILINE)
            self.assertEqual(found, ["", "de", "fr", "es", "ja", "zh_CN"], key)
        if shutil.which("desktop-file-validate"):
            result = subprocess.run(["desktop-file-validate", str(path)], capture_output=True, text=True, check=False)
            self.assertEqual((result.returncode, result.stdout), (0, ""))

    @unittest.skipUnless(shutil.which("update-mime-database"), "there is no update-mime-database")
    def test_exported_files_have_a_type_with_an_icon_and_a_name_in_every_language(self):
        folder = Path(self.folder.name) / "mime"
        shutil.copytree(self.prefix / "share/mime", folder)
        subprocess.run(["update-mime-database", str(folder)], check=True, capture_output=True)
        types = dict(reversed(line.split(":")[1:3]) for line in (folder / "globs2").read_text().splitlines()
                     if not line.startswith("#"))
        # In lower case, because the letter case of a name does not matter.
        self.assertEqual(types, {"*.kestraprofile": "application/x-quill-kestra-profile",
                                 "*.kestramacro": "application/x-quill-kestra-macro"})
        for name in types.values():
            icon = self.prefix / "share/icons/hicolor/scalable/mimetypes" / f"{name.replace('/', '-')}.svg"
            self.assertTrue(icon.is_file())
            ElementTree.parse(icon)
            comments = ElementTree.parse(folder / f"{name}.xml").getroot().findall("{*}comment")
            self.assertEqual([each.get("{http://www.w3.org/XML/1998/namespace}lang") for each in comments],
                             [None, "de", "fr", "es", "ja", "zh_CN"])

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
                self.kestractl("macro", "add", "Big: combo")
                self.kestractl("macro", "add", "Cost\\ $5's \"a\" b")
                self.check_completions()
            finally:
                daemon.terminate()

    # In a shell: what is typed, with a tab for each completion, and the words of the command line that comes of it.
    COMPLETIONS = [("kestractl devi\tli\t", "kestractl|device|list"),
                   ("kestractl key A mac\tBi\t--rep\tunti\t", "kestractl|key|A|macro|Big: combo|--repeat|until-"),
                   ("kestractl document exp\tsettings-of-\t", "kestractl|document|export|settings-of-today.json"),
                   ("kestractl key LeftSh\tdis\t", "kestractl|key|LeftShift|disable"),
                   ('kestractl profile switch "Def\t', "kestractl|profile|switch|Default Profile"),
                   ("kestractl profile switch 'Default P\t", "kestractl|profile|switch|Default Profile"),
                   ('kestractl key "A" macro "Big: c\t--rep\tunti\t',
                    "kestractl|key|A|macro|Big: combo|--repeat|until-"),
                   ("kestractl macro show 'Bi\t", "kestractl|macro|show|Big: combo"),
                   ("kestractl macro show 'Co\t", "kestractl|macro|show|Cost\\ $5's \"a\" b"),
                   ('kestractl macro show "Cost\\ \\$\t', "kestractl|macro|show|Cost\\ $5's \"a\" b"),
                   ("kestractl macro show Co\t", "kestractl|macro|show|Cost\\ $5's \"a\" b"),
                   ('kestractl profile switch Default" Pr\t', "kestractl|profile|switch|Default Profile"),
                   ("kestractl key A macro 'Big':\\ c\t--rep\tunti\t",
                    "kestractl|key|A|macro|Big: combo|--repeat|until-"),
                   ('kestractl document restore "settings-of-\t', "kestractl|document|restore|settings-of-today.json")]

    def check_completions(self):
        """Every shell that is here completes as `COMPLETIONS` says."""
        folder = Path(self.folder.name) / "files"
        folder.mkdir(exist_ok=True)
        (folder / "settings-of-today.json").touch()
        share = self.prefix / "share"
        starts = {
            "bash": (["bash", "--noprofile", "--norc", "-i"],
                     f"source {share}/bash-completion/completions/kestractl"),
            "zsh": (["zsh", "-f", "-i"],
                    f"fpath=({share}/zsh/site-functions $fpath); autoload -U compinit; compinit -u -D; bindkey -e")}
        for shell, (command, preparation) in starts.items():
            if shutil.which(shell) is None:
                print(f"There is no {shell}.")
                continue
            for typed, expected in self.COMPLETIONS:
                with self.subTest(shell, typed=typed):
                    self.assertEqual(self.completed(command, preparation, typed, folder), expected)
        if shutil.which("fish") is None:
            print("There is no fish.")
            return
        for typed, expected in self.COMPLETIONS:
            with self.subTest("fish", typed=typed):
                self.assertEqual(self.completed_by_fish(typed, folder), expected)

    def shell_environment(self):
        return {**self.environment(), "PATH": f"{self.prefix}/bin:{os.environ['PATH']}", "TERM": "dumb", "PS1": "> ",
                "LC_ALL": "C.UTF-8"}

    def completed(self, command, preparation, typed, folder):
        """The words of the command line when the shell has completed what is typed at its terminal."""
        process, terminal = pty.fork()
        if process == 0:
            os.chdir(folder)
            os.execvpe(command[0], command, self.shell_environment())
        try:
            seen = b""

            def send(text, awaited):
                nonlocal seen
                os.write(terminal, text.encode())
                deadline = time.monotonic() + LIMIT_SECONDS
                while not re.search(awaited, seen):
                    self.assertTrue(select.select([terminal], [], [], max(0, deadline - time.monotonic()))[0],
                                    f"no {awaited} in {seen}")
                    seen += os.read(terminal, 65536)
                result = re.search(awaited, seen)
                seen = seen[result.end():]
                return result

            # Its words come back on a line of their own, separated by "|". The text on the line itself must not match.
            send(f"{preparation}; show() {{ printf '%s|' '<''<'; printf '%s|' \"$@\"; echo '>''>'; }}; echo rea''dy\n",
                 rb"\nready")
            for part in re.split("(?<=\t)", typed):
                os.write(terminal, part.encode())
            result = send("\x01show \x05\n", rb"<<\|(.*?)\|>>")
            return result.group(1).decode()
        finally:
            os.kill(process, signal.SIGKILL)
            os.waitpid(process, 0)
            os.close(terminal)

    def completed_by_fish(self, typed, folder):
        """The same with fish, which lists the completions of a line."""
        line = ""
        for part in re.findall("[^\t]+", typed):
            line += part
            script = (f"source {self.prefix}/share/fish/vendor_completions.d/kestractl.fish; "
                      "complete -C (string collect -- $argv)")
            result = subprocess.run(["fish", "--no-config", "-c", script, line], env=self.shell_environment(),
                                    cwd=folder, capture_output=True, text=True, check=True, timeout=LIMIT_SECONDS)
            found = [found.split("\t")[0] for found in result.stdout.splitlines()]
            line = shlex.join([*words_of(line)[:-1], os.path.commonprefix(found)]) + (" " if len(found) == 1 else "")
        return "|".join(words_of(line))


def words_of(line):
    """The words of a command line, whose last quote may be open."""
    for end in ["", "'", '"']:
        try:
            return shlex.split(line + end)
        except ValueError:
            pass
    raise AssertionError(line)


if __name__ == "__main__":
    unittest.main()
