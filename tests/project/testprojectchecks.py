#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Tests that each check of the repository reports the fault in a bad sample and nothing in a good one."""

import unittest

from projectchecks import (MAXIMUM_MAIN_LINES, Source, check_bus_connections, check_changelog,
                           check_document_look_ups, check_failures, check_include_directions, check_label_case,
                           check_licence_lines, check_links, check_machine_paths, check_protocol_document, check_string_connects, check_texts, check_thin_mains)

KEYS_CMAKE = Source("keys/CMakeLists.txt", """
kestra_library(kestra_keys_records
  SOURCES
    keylayout.cpp keylayout.h
  LINK kestra_base)
kestra_library(kestra_keys
  SOURCES
    keyboardkeyscontroller.cpp keyboardkeyscontroller.h
  LINK kestra_keys_records)
""")
PROFILES_CMAKE = Source("profiles/CMakeLists.txt", """
kestra_library(kestra_profiles_records
  SOURCES
    profilefile.cpp profilefile.h
  LINK kestra_base)
""")
PLATFORM_CMAKE = Source("platform/CMakeLists.txt", """
kestra_library(kestra_platform_widgets
  SOURCES
    sheet.cpp sheet.h
  LINK kestra_platform)
""")
HEADERS = [Source(path, "") for path in (
    "app/keyboardmaincontroller.h", "base/text.h", "daemon/devicedaemon.h", "daemonlink/replyport.h", "cli/console.h",
    *(f"daemon/{room}/thing.h" for room in ("system", "engine", "settings", "keyboards", "keyboards/virtual",
                                            "keyboards/linux", "capture", "launch", "frontapplication")),
    "keys/keylayout.h", "keys/keyboardkeyscontroller.h", "keys/keytable.inc", "platform/sheet.h",
    "platform/messageport.h", "profiles/profilescontroller.h", "profiles/profilefile.h",
    "tests/support/fakedaemon.h")]


def include_findings(path, included):
    sample = Source(path, f'#include "{included}"\n')
    return check_include_directions([KEYS_CMAKE, PROFILES_CMAKE, PLATFORM_CMAKE, *HEADERS, sample])


class IncludeDirections(unittest.TestCase):
    def test_forbidden_directions_are_found(self):
        for path, included in (
                ("base/text.cpp", "platform/messageport.h"),
                ("base/text.cpp", "app/keyboardmaincontroller.h"),
                ("platform/messageport.cpp", "app/keyboardmaincontroller.h"),
                ("daemonlink/replyport.cpp", "app/keyboardmaincontroller.h"),
                ("daemon/devicedaemon.cpp", "app/keyboardmaincontroller.h"),
                ("cli/console.cpp", "app/keyboardmaincontroller.h"),
                ("platform/messageport.cpp", "daemonlink/replyport.h"),
                ("daemonlink/replyport.cpp", "keys/keylayout.h"),
                ("daemonlink/replyport.cpp", "platform/sheet.h"),
                ("keys/keyboardkeyscontroller.cpp", "daemonlink/replyport.h"),
                ("keys/keyboardkeyscontroller.cpp", "app/keyboardmaincontroller.h"),
                ("macros/macroscontroller.cpp", "keys/keyboardkeyscontroller.h"),
                ("keys/keylayout.cpp", "keys/keyboardkeyscontroller.h"),
                ("keys/keylayout.cpp", "platform/sheet.h"),
                ("daemon/devicedaemon.cpp", "daemonlink/replyport.h"),
                ("daemon/devicedaemon.cpp", "platform/sheet.h"),
                ("daemon/devicedaemon.cpp", "keys/keyboardkeyscontroller.h"),
                ("daemon/system/a.cpp", "daemon/engine/thing.h"),
                ("daemon/system/a.cpp", "keys/keylayout.h"),
                ("daemon/engine/a.cpp", "daemon/system/thing.h"),
                ("daemon/engine/a.cpp", "daemon/settings/thing.h"),
                ("daemon/engine/a.cpp", "platform/messageport.h"),
                ("daemon/settings/a.cpp", "daemon/keyboards/thing.h"),
                ("daemon/settings/a.cpp", "daemon/capture/thing.h"),
                ("daemon/keyboards/a.cpp", "daemon/capture/thing.h"),
                ("daemon/keyboards/a.cpp", "daemon/keyboards/linux/thing.h"),
                ("daemon/keyboards/virtual/a.cpp", "daemon/keyboards/linux/thing.h"),
                ("daemon/keyboards/linux/a.cpp", "daemon/keyboards/virtual/thing.h"),
                ("daemon/keyboards/linux/a.cpp", "daemon/devicedaemon.h"),
                ("daemon/capture/a.cpp", "daemon/frontapplication/thing.h"),
                ("daemon/capture/a.cpp", "daemon/keyboards/virtual/thing.h"),
                ("daemon/launch/a.cpp", "daemon/settings/thing.h"),
                ("daemon/frontapplication/a.cpp", "daemon/launch/thing.h"),
                ("daemon/frontapplication/a.cpp", "daemon/devicedaemon.h"),
                ("daemon/devicedaemon.cpp", "profiles/profilefile.h"),
                ("cli/console.cpp", "keys/keyboardkeyscontroller.h"),
                ("cli/console.cpp", "daemon/devicedaemon.h"),
                ("app/main.cpp", "daemon/devicedaemon.h"),
                ("app/main.cpp", "tests/support/fakedaemon.h"),
        ):
            with self.subTest(path=path, included=included):
                self.assertEqual(include_findings(path, included), [f'{path}: must not include "{included}"'])

    def test_allowed_directions_pass(self):
        for path, included in (
                ("platform/messageport.cpp", "base/text.h"),
                ("daemonlink/replyport.cpp", "platform/messageport.h"),
                ("keys/keyboardkeyscontroller.cpp", "platform/sheet.h"),
                ("macros/macroscontroller.cpp", "keys/keylayout.h"),
                ("keys/keylayout.cpp", "keys/keytable.inc"),
                ("daemon/devicedaemon.cpp", "keys/keylayout.h"),
                ("daemon/engine/a.cpp", "keys/keylayout.h"),
                ("daemon/settings/a.cpp", "daemon/engine/thing.h"),
                ("daemon/keyboards/linux/a.cpp", "daemon/keyboards/thing.h"),
                ("daemon/capture/a.cpp", "daemon/keyboards/thing.h"),
                ("daemon/launch/a.cpp", "daemon/system/thing.h"),
                ("daemon/frontapplication/a.cpp", "daemon/settings/thing.h"),
                ("daemon/devicedaemon.cpp", "daemon/keyboards/linux/thing.h"),
                ("cli/console.cpp", "daemonlink/replyport.h"),
                ("cli/console.cpp", "profiles/profilefile.h"),
                ("app/main.cpp", "profiles/profilescontroller.h"),
                ("tests/keys/tst_keys.cpp", "tests/support/fakedaemon.h"),
        ):
            with self.subTest(path=path, included=included):
                self.assertEqual(include_findings(path, included), [])

    def test_a_room_without_a_rule_is_found(self):
        self.assertEqual(include_findings("daemon/attic/a.cpp", "base/text.h"),
                         ["daemon/attic/a.cpp: is in a room of the daemon that has no rule"])

    def test_a_path_that_is_not_from_the_root_is_found(self):
        self.assertEqual(len(include_findings("keys/keylayout.cpp", "keylayout.h")), 1)


class LicenceLines(unittest.TestCase):
    def test_each_kind_of_file_needs_the_line(self):
        for path, text in (("keys/a.cpp", "int a;"), ("keys/a.h", "int a;"), ("keys/a.inc", "A(1)"),
                           ("keys/CMakeLists.txt", "add()"), ("cmake/a.cmake", "add()"), ("tools/a.py", "pass"),
                           ("tools/a.sh", "true"), ("run", "#!/bin/sh\ntrue")):
            with self.subTest(path=path):
                self.assertEqual(len(check_licence_lines([Source(path, text)])), 1)

    def test_the_line_may_follow_the_interpreter(self):
        self.assertEqual(check_licence_lines([Source("run", "#!/bin/sh\n# SPDX-License-Identifier: MIT\ntrue")]), [])

    def test_the_line_does_not_count_further_down(self):
        text = "int a;\n" * 5 + "// SPDX-License-Identifier: MIT\n"
        self.assertEqual(len(check_licence_lines([Source("keys/a.cpp", text)])), 1)

    def test_texts_need_none(self):
        self.assertEqual(check_licence_lines([Source("README.md", "# Title")]), [])


class StringConnects(unittest.TestCase):
    def test_signal_is_found_everywhere(self):
        for path in ("keys/a.cpp", "platform/a.cpp", "tests/keys/a.cpp"):
            with self.subTest(path=path):
                self.assertEqual(len(check_string_connects([Source(path, "connect(a, SIGNAL(b()), c);")])), 1)

    def test_slot_is_found_outside_platform(self):
        for text in ("connect(a, b, SLOT(b()));", "QObject::connect(a, SLOT(b()));", "auto slot = SLOT(b());",
                     "bus.connect(f(x), g);\nconnect(a, SLOT(b()));"):
            with self.subTest(text=text):
                self.assertEqual(len(check_string_connects([Source("daemon/a.cpp", text)])), 1)

    def test_signals_of_the_bus_may_be_connected(self):
        for text in ("bus.connect(QString(), u\"/a\"_s,\n    this, SLOT(b()));",
                     "QDBusConnection::sessionBus().connect(QString(), this, SIGNAL(b(QDBusMessage)));"):
            with self.subTest(text=text):
                self.assertEqual(check_string_connects([Source("daemon/a.cpp", text)]), [])

    def test_one_file_of_platform_may_name_a_slot(self):
        one = Source("platform/a.cpp", "return SLOT(b());")
        other = Source("platform/b.cpp", "return SLOT(b());")
        self.assertEqual(check_string_connects([one]), [])
        self.assertEqual(len(check_string_connects([one, other])), 1)

    def test_other_words_pass(self):
        self.assertEqual(check_string_connects([Source("keys/a.cpp", "Q_SIGNALS: QSIGNAL (x); SLOTS(")]), [])


class BusConnections(unittest.TestCase):
    def test_connections_of_the_library_are_found(self):
        for text in ("auto bus = QDBusConnection::sessionBus();",
                     "QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);"):
            with self.subTest(text=text):
                self.assertEqual(len(check_bus_connections([Source("daemon/a.cpp", text)])), 1)

    def test_their_home_and_tests_may_have_them(self):
        for path in ("platform/sessionbus.cpp", "tests/daemon/a.cpp", "tools/tour/a.cpp"):
            with self.subTest(path=path):
                self.assertEqual(check_bus_connections([Source(path, "QDBusConnection::sessionBus();")]), [])

    def test_other_connections_pass(self):
        text = "QDBusConnection::systemBus(); sharedSessionBus(); QDBusConnection::disconnectFromBus(name);"
        self.assertEqual(check_bus_connections([Source("daemon/a.cpp", text)]), [])


class DocumentLookUps(unittest.TestCase):
    def test_look_ups_beside_the_readers_are_found(self):
        for text in ("document.value(SettingsKeys::profiles).toList();",
                     "reply->value(SettingsKeys::macros);",
                     "chosen.record().value(SettingsKeys::appInfo).toMap();",
                     "profiles.at(row).toMap().contains(SettingsKeys::keys);",
                     "settings.value(\n        SettingsKeys::activeProfile)"):
            for path in ("cli/a.cpp", "app/a.cpp", "keys/a.h", "daemon/capture/a.cpp"):
                with self.subTest(path=path, text=text):
                    self.assertEqual(len(check_document_look_ups([Source(path, text)])), 1)

    def test_every_look_up_of_a_file_is_found(self):
        text = "a.value(SettingsKeys::red); b.value(SettingsKeys::green);"
        self.assertEqual(len(check_document_look_ups([Source("lighting/a.cpp", text)])), 2)

    def test_readers_and_tests_may_look_up(self):
        for path in ("base/document.cpp", "macros/macrorecord.cpp", "daemon/settings/a.cpp", "tests/app/a.cpp"):
            with self.subTest(path=path):
                text = "document.value(SettingsKeys::profiles)"
                self.assertEqual(check_document_look_ups([Source(path, text)]), [])

    def test_changes_notifications_and_the_factory_resource_pass(self):
        text = ("profile.insert(SettingsKeys::keys, keys); profile[SettingsKeys::profileName] = name;"
                "notification.userInfo.value(SettingsKeys::activeProfile); plist.value(SettingsKeys::deviceInfo);"
                "device.value(DeviceKeys::state); Document(document).profiles();")
        self.assertEqual(check_document_look_ups([Source("app/a.cpp", text)]), [])


class Failures(unittest.TestCase):
    def test_out_parameters_for_a_reason_are_found(self):
        for text in ("bool save(const QByteArray &data, QString *problem = nullptr);", "Device open(QString &error);",
                     "Device open(const QString &path, int &error, bool isNew);", "int read(bool *ok);"):
            with self.subTest(text=text):
                self.assertEqual(len(check_failures([Source("daemon/a.h", text)])), 1)

    def test_success_among_reasons_is_found(self):
        for text in ("enum class Code { ok, unknown, refused };",
                     "enum class SendStatus : int {\n    late,\n    success,\n};"):
            with self.subTest(text=text):
                self.assertEqual(len(check_failures([Source("daemon/a.h", text)])), 1)

    def test_numbers_that_other_programs_read_may_have_success(self):
        self.assertEqual(check_failures([Source("cli/exitcode.h", "enum class ExitCode { ok = 0 };")]), [])

    def test_other_enumerations_pass(self):
        for text in ("enum class Cause { unknown, refused };", "enum class Step {\n    first, // done by the user\n};",
                     "enum class Token { okay, undone };"):
            with self.subTest(text=text):
                self.assertEqual(check_failures([Source("daemon/a.h", text)]), [])

    def test_tests_may_have_them(self):
        for path in ("tests/daemon/a.cpp", "fuzz/a.cpp"):
            with self.subTest(path=path):
                self.assertEqual(check_failures([Source(path, "Device open(int &error);")]), [])

    def test_other_parameters_pass(self):
        for text in ("void refuse(const QString &reason);", "void refuse(int error);", "bool take(QList<int> &errors);",
                     "const QString *problem = find(); int *next(int *position);", "text.toInt(&ok);"):
            with self.subTest(text=text):
                self.assertEqual(check_failures([Source("daemon/a.h", text)]), [])


class LabelCase(unittest.TestCase):
    @staticmethod
    def findings(text, key="lkeyOne", path="resources/texts/en/keys.ts"):
        line = f'<message id="{key}"><source>{key}</source><translation>{text}</translation></message>'
        return check_label_case([Source(path, line)])

    def test_sentence_case_passes(self):
        for text in ("Release keys", "Delete", "Quill Kestra Configurator", "Press F5 or AB", "Stopped. Try again.",
                     "Undo: Macro %@ added"):
            with self.subTest(text=text):
                self.assertEqual(self.findings(text), [])

    def test_title_case_is_found(self):
        self.assertEqual(self.findings("Release Keys"),
                         ["resources/texts/en/keys.ts: lkeyOne: 'Keys' begins with a capital"])

    def test_other_languages_and_the_fixed_label_pass(self):
        self.assertEqual(self.findings("Tasten Loslassen", path="resources/texts/de/keys.ts"), [])
        self.assertEqual(self.findings("Type Text…", key="lkeyTypeText"), [])


class Texts(unittest.TestCase):
    CODE = Source("keys/a.cpp", 'localizedText("lkeyOne"); row{"lkeyTwo"};')

    @staticmethod
    def table(*keys, path="resources/texts/en/keys.ts"):
        return Source(path, "".join(f'<message id="{key}"><source>{key}</source></message>' for key in keys))

    def test_complete_tables_pass(self):
        self.assertEqual(check_texts([self.CODE, self.table("lkeyOne", "lkeyTwo")]), [])

    def test_a_missing_text_is_found(self):
        self.assertEqual(check_texts([self.CODE, self.table("lkeyOne")]),
                         ["keys/a.cpp: resources/texts/en has no text for lkeyTwo"])

    def test_a_text_missing_in_one_language_is_found(self):
        other = self.table("lkeyOne", path="resources/texts/de/keys.ts")
        self.assertEqual(check_texts([self.CODE, self.table("lkeyOne", "lkeyTwo"), other]),
                         ["keys/a.cpp: resources/texts/de has no text for lkeyTwo"])

    def test_tables_that_are_all_missing_are_found(self):
        self.assertEqual(len(check_texts([self.CODE])), 2)

    def test_an_unused_text_is_found(self):
        self.assertEqual(check_texts([self.CODE, self.table("lkeyOne", "lkeyTwo", "lkeyThree")]),
                         ["resources/texts/en/keys.ts: nothing uses lkeyThree"])

    def test_a_use_in_a_test_does_not_count(self):
        test = Source("tests/keys/a.cpp", 'localizedText("lkeyThree")')
        self.assertEqual(len(check_texts([self.CODE, test, self.table("lkeyOne", "lkeyTwo", "lkeyThree")])), 1)

    def test_a_text_given_twice_is_found(self):
        tables = [self.table("lkeyOne", "lkeyTwo"), self.table("lkeyTwo", path="resources/texts/en/app.ts")]
        self.assertEqual(len(check_texts([self.CODE, *tables])), 1)


class MachinePaths(unittest.TestCase):
    def test_paths_of_one_machine_are_found(self):
        for folder in ("work", "root", "Users", "home/anna"):
            with self.subTest(folder=folder):
                text = f"first\nopen('/{folder}/project/a')"
                findings = check_machine_paths([Source("tools/a.py", text)])
                self.assertEqual(len(findings), 1)
                self.assertTrue(findings[0].startswith("tools/a.py:2:"))

    def test_other_paths_pass(self):
        text = "/usr/bin/env /tmp/x /home/user/Programs/a.app ${DIR}/work/x https://host/root/x ../work/x"
        self.assertEqual(check_machine_paths([Source("tools/a.py", text)]), [])


class ThinMains(unittest.TestCase):
    @staticmethod
    def main_of(lines):
        return "int main(int argc, char *argv[])\n{\n" + "    run();\n" * (lines - 3) + "}\n"

    def test_a_long_main_is_found(self):
        self.assertEqual(len(check_thin_mains([Source("cli/main.cpp", self.main_of(MAXIMUM_MAIN_LINES))])), 1)

    def test_a_thin_main_passes(self):
        self.assertEqual(check_thin_mains([Source("cli/main.cpp", self.main_of(MAXIMUM_MAIN_LINES - 1))]), [])

    def test_tests_are_not_limited(self):
        self.assertEqual(check_thin_mains([Source("tests/a/tst_a.cpp", self.main_of(200))]), [])


class ProtocolDocument(unittest.TestCase):
    HEADER = """
inline constexpr Key requestPortName{"CoreMsgPort"};
enum class Command : qint32 {
    openDevice = 0,
    readSettings = 4,
};
// Request keys
inline constexpr Key profileId{"ProfileID"};
// Reply keys
inline constexpr Key settings{"AllDevSettings"};
// Keys of notifications' user information
inline constexpr Key sourceApp{"Source App"};
// Notification names.
inline constexpr Key updated{"Profile Updated 271"};
inline constexpr Key dpi{"DPI Updated 271"};
QStringLiteral("replyNotification%1").arg(product);
"""
    STATUS = "enum class Status : int {\n    ok = 0, ///< fine\n    malformed = 2,\n};\n"
    DOCUMENT = """
## Ports

The daemon's is `CoreMsgPort`, at `/MessagePort`.

## Messages

| Key | Type |
|---|---|
| `Source App` | string |

### Status codes

| `ReturnStatus` | Meaning |
|---|---|
| 0 | done |
| 2 | malformed |

## Commands

### Device

| Command | Request | Effect | Reply |
|---|---|---|---|
| 0 open | | `Unknown` | |

### Settings

| Command | Request | Effect | Reply |
|---|---|---|---|
| 4 read | `ProfileID`, `{"MacroName": string}` | | `AllDevSettings` |

## Captures

| 99 | no command |

## Notifications

### Interface org.quillkestra.DistributedNotificationCenter

| Name | User information | When |
|---|---|---|
| `Profile Updated 271` | `Source App` | |
| `replyNotification271` | | |

`DPI Updated 271` is never posted.
"""

    def findings(self, **changed):
        texts = {"base/daemonprotocol.h": self.HEADER, "base/status.h": self.STATUS,
                 "base/settingskeys.h": 'inline constexpr Key macroName{"MacroName"};',
                 "docs/daemon-protocol.md": self.DOCUMENT}
        for path, (old, new) in changed.pop("replaced", {}).items():
            self.assertIn(old, texts[path])
            texts[path] = texts[path].replace(old, new)
        return check_protocol_document([Source(path, text) for path, text in texts.items()])

    def test_the_same_in_both_passes(self):
        self.assertEqual(self.findings(), [])

    def test_what_only_the_headers_have_is_found(self):
        for path, old, new in (
                ("base/daemonprotocol.h", "    readSettings = 4,", "    readSettings = 4,\n    other = 5,"),
                ("base/daemonprotocol.h", "// Reply keys", 'inline constexpr Key a{"Another"};\n// Reply keys'),
                ("base/daemonprotocol.h", "QString", 'inline constexpr Key a{"Another 271"};\nQString'),
                ("base/daemonprotocol.h", "enum", 'inline constexpr Key a{"OtherPort"};\nenum'),
                ("base/status.h", "malformed = 2,", "malformed = 2,\n    other = 3,")):
            with self.subTest(path=path, new=new):
                found = self.findings(replaced={path: (old, new)})
                self.assertEqual(len(found), 1, found)
                self.assertTrue(found[0].startswith("docs/daemon-protocol.md: has no "), found)

    def test_what_only_the_document_has_is_found(self):
        for old, new in (
                ("| 4 read |", "| 5 more | | | |\n| 4 read |"),
                ("| 2 | malformed |", "| 2 | malformed |\n| 3 | more |"),
                ("`ProfileID`,", "`ProfileID`, `Another`,"),
                ("| `AllDevSettings` |", "| `AllDevSettings`, `Another` |"),
                ("| `Source App` | string |", "| `Source App` | string |\n| `Another` | string |"),
                ("| `replyNotification271` |", "| `Another271` | | |\n| `replyNotification271` |"),
                ("`DPI Updated 271` is", "`DPI Updated 271` and `Another 271` are"),
                ("is `CoreMsgPort`,", "is `CoreMsgPort` or `OtherPort`,")):
            with self.subTest(new=new):
                found = self.findings(replaced={"docs/daemon-protocol.md": (old, new)})
                self.assertEqual(len(found), 1, found)
                self.assertTrue(found[0].endswith("which is in docs/daemon-protocol.md"), found)

    def test_nothing_to_compare_is_found(self):
        for path, old, new in (("base/daemonprotocol.h", "enum class Command", "enum class Cmd"),
                               ("base/status.h", "enum class Status", "enum class State"),
                               ("docs/daemon-protocol.md", "## Commands", "## Orders"),
                               ("docs/daemon-protocol.md", "## Ports", "## Doors")):
            with self.subTest(path=path, old=old):
                self.assertNotEqual(self.findings(replaced={path: (old, new)}), [])

    def test_a_missing_file_is_found(self):
        self.assertEqual(len(check_protocol_document([])), 4)


class Changelog(unittest.TestCase):
    def findings(self, *headings, version="1.4.2"):
        return check_changelog([Source("CMakeLists.txt", f"project(QuillKestra VERSION {version} LANGUAGES CXX\n"),
                                Source("CHANGELOG.md", "".join(f"## {heading}\n" for heading in headings))])

    def test_a_good_one_passes(self):
        self.assertEqual(self.findings("[1.4.2] - unreleased", "[1.4.1] - 2026-03-04", "[0.10.0] - 2026-01-02"), [])
        self.assertEqual(self.findings("[1.4.2] - 2026-03-04"), [])

    def test_bad_ones_are_found(self):
        for headings in (["[1.4.3] - unreleased"], ["Unreleased"], [], ["[1.4.2] - soon"],
                         ["[1.4.2] - unreleased", "[1.4.1] - unreleased"],
                         ["[1.4.2] - 2026-03-04", "[1.4.10] - 2026-03-03"]):
            with self.subTest(headings=headings):
                self.assertEqual(len(self.findings(*headings)), 1)


class Links(unittest.TestCase):
    FILES = [Source("README.md", "# Title\n\n## What it is\n"), Source("docs/images/a.png", ""),
             Source("docs/man/a.1", ".TH")]

    def findings(self, text, path="docs/a.md"):
        return check_links([*self.FILES, Source(path, text)])

    def test_links_that_lead_nowhere_are_found(self):
        for text in ("[a](b.md)", "![a](images/b.png)", "[a](../README.md#other)", "[a](#none)", "[a](README.md)",
                     "[a]: b.md", '<img src="b.png">', "[a](man/a.1#heading)"):
            with self.subTest(text=text):
                self.assertEqual(len(self.findings(text)), 1)

    def test_links_that_lead_somewhere_pass(self):
        for text in ("[a](../README.md)", "![a](images/a.png)", "[a](../README.md#what-it-is)", "# One\n[a](#one)",
                     "[a](man/a.1)", "[a](images)", "[a](https://example.org/b.md)", "[a]: ../README.md",
                     "`[a](b.md)`", "```\n[a](b.md)\n```\n"):
            with self.subTest(text=text):
                self.assertEqual(self.findings(text), [])


if __name__ == "__main__":
    unittest.main()
