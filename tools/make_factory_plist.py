#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes resources/Kestra.plist, the factory settings, from the key table.

Run it from any folder after a change to keys/keytable.inc. With --check it only reports whether the file is up to date.
"""

import pathlib
import plistlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
KEY_TABLE = ROOT / "keys" / "keytable.inc"
OUTPUT = ROOT / "resources" / "Kestra.plist"

DEFAULT_KEY = 45  # the assignment type "the key does what the keyboard does by default"


def key_codes():
    """The codes of the selectable keys, in the order of the table."""
    rows = re.findall(r"^KESTRA_KEY\(\s*\w+,\s*\w+,\s*(\d+),", KEY_TABLE.read_text("utf-8"), re.MULTILINE)
    return [int(code) for code in rows]


def default_profile():
    return {
        "ProfileName": "Default Profile",
        "AppInfo": {"application": "", "executable": "", "identifier": "", "signature": ""},
        "AutoSwitchOn": 0,
        "ProfileOSDOn": 1,
        "BacklightLED": 1,
        "BrightnessKBNormal": 4,
        "GameLightingOn": True,
        "LEDKBColors": [{"Red": 0.0, "Green": 0.5, "Blue": 1.0}],
        "LEDKBEffects": 0,
        "ScrollLED": 1,
        "Keys": {str(code): {"command": DEFAULT_KEY, "param1": code, "param2": 0} for code in sorted(key_codes())},
    }


def factory_document():
    return {
        "Default Settings": {
            "Profiles": [default_profile()],
            "Macros": [],
            "DeviceSettings": {"ActiveProfile": 0, "ProfileOSDOn": 1, "GameMode": False},
        },
        "Device Info": {"Last selected key": ""},
    }


def main():
    text = plistlib.dumps(factory_document(), fmt=plistlib.FMT_XML, sort_keys=False)
    text = re.sub(rb"<!DOCTYPE[^>]*>\n", b"", text)  # keeps readers from fetching a DTD from the network
    if "--check" in sys.argv[1:]:
        if OUTPUT.read_bytes() != text:
            sys.exit(f"{OUTPUT.relative_to(ROOT)} is not what {KEY_TABLE.relative_to(ROOT)} makes of it")
        return
    OUTPUT.write_bytes(text)


if __name__ == "__main__":
    main()
