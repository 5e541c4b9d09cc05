#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the seeds in fuzz/corpus, one folder per target: a small input for each decision of a reader."""

import base64
import datetime
import pathlib
import plistlib
import struct
import zlib

CORPUS = pathlib.Path(__file__).resolve().parent / "corpus"

TREES = {
    "profile": {"ProfileName": "A", "Keys": {"4": {"command": 45, "param1": 4, "param2": 0}}, "GameLightingOn": True},
    "macro": {"MacroName": "Ä", "sequence": {"Events": [{"command": 1, "delay": 10, "page": 7, "argument": 4}] * 2}},
    "scalars": [0, 255, 256, 65536, 2**32, -1, 2**63, 1.5, True, False, b"", b"\0\xff", "", "x" * 15, "\U0001f642",
                datetime.datetime(2011, 5, 17, 9, 30)],
    "empty": {"": {}, "a": []},
}

DEEP = 513  # containers inside each other, one more than a reader accepts

OLD_STYLE = {
    "dictionary": '{ a = b; "c d" = ( 1, "\\n\\U00e4\\341\\"", \'x\' ); /* e */ f = <00 ff>; // g\n }',
    "array": "( {}, ( ), <>, /usr/bin/true, )",
    "strings": '/* a */ a = b; "c d" = "\\n\\U00e4"; // e\nf = { g = ( h ) };',
    "deep": "(" * DEEP + ")" * DEEP,
}

XML = {
    "range": "<plist><array><real>1e400</real><real>-1e-400</real></array></plist>",
    "markup": "<?xml version='1.0' encoding='ISO-8859-1'?><!DOCTYPE plist SYSTEM 'a>'><!-- - --><plist version='1.0'>"
              "<?a b?><dict a='>' b=\"/\"><key>a</key><string>&lt;&#9;<![CDATA[<]]></string></dict></plist>",
    "attributes": "<plist><true " + " ".join(f"a{number}=''" for number in range(40)) + "/></plist>",
    "values": '<' + '"' * 17,
    "subset": "<!DOCTYPE plist [<!ENTITY a 'b'>]><plist><string>&a;</string></plist>",
    "deep": "<plist>" + "<array>" * DEEP + "</array>" * DEEP + "</plist>",
}


def binary(objects, reference_size=1, top=0, count=None):
    """A binary file of raw objects with number `top` as its root; `count` is the number of objects in the trailer."""
    body, table = b"bplist00", b""
    for data in objects:
        table += struct.pack(">H", len(body))
        body += data
    trailer = struct.pack(">6xBBQQQ", 2, reference_size, count or len(objects), top, len(body))
    return body + table + trailer


RAW = {
    "pairs": binary([bytes((0xA2, i, i)) for i in range(1, 25)] + [b"\x10\x01"]),
    "cycle": binary([b"\xa1\x01", b"\xd1\x02\x00", b"\x51a"]),
    "wide": binary([b"\xa1\x00\x01", b"\x14" + bytes(8) + b"\x80" + bytes(7)], 2),
    "surrogate": binary([b"\xa2\x01\x02", b"\x61\xd8\x3d", b"\x22\x3f\x80\x00\x00"]),
    "deep": binary([struct.pack(">BH", 0xA1, number) for number in range(1, DEEP)] + [b"\xa0"], 2),
    "cutinteger": binary([b"\x13\0"]),
    "cutreal": binary([b"\x23\x40\0"]),
    "cutdate": binary([b"\x33\x40\0"]),
    "cutdata": binary([bytes(96), b"\x4f\x10\x60"], top=1),
    "cutcount": binary([bytes(96), b"\x4f\x11"], top=1),
    "cuttable": binary([b"\x09"], top=99999, count=100000),
    "counts": binary([b"\xaf\x10\x02\x01\x02", b"\x5f\x11\x00\x01a", b"\x4f\x13" + bytes(7) + b"\x01a"]),
}


PROFILE = {
    "ProfileName": "A",
    "Keys": {"4": {"command": 16, "param1": 5, "param2": 2}, "58": {"command": 10, "param1": 0, "param2": 254},
             "59": {"command": 17, "param1": 1, "param2": 0}, "60": {"command": 46, "param1": "/a.app", "param2": ""},
             "61": {"command": 20, "param1": 0, "param2": 0}, "62": {"command": 45, "param1": 62, "param2": 0}},
    "AppInfo": {"application": "Game", "executable": "game", "identifier": "org.game", "signature": ""},
    "AutoSwitchOn": 1, "ProfileOSDOn": 1, "BacklightLED": True, "BrightnessKBNormal": 3, "LEDKBEffects": 4,
    "LEDKBColors": [{"Red": 1.0, "Green": 0.5, "Blue": 0.0}], "GameLightingOn": False, "ScrollLED": True,
}
MACRO = {
    "MacroName": "M", "delay": 20,
    "sequence": {"Events": [{"command": 1, "delay": 0, "page": 7, "argument": 4},
                            {"command": 0, "delay": 15, "page": 7, "argument": 4},
                            {"command": 1, "delay": 15, "page": 9, "argument": 1}]},
}
SETTINGS = {"Profiles": [PROFILE], "Macros": [MACRO], "DeviceSettings": {"ActiveProfile": 0, "GameMode": True}}
OLD_RECORDS = {
    "profilefile": "{ ProfileName = A; AutoSwitchOn = 1; Keys = { 4 = { command = 16; param1 = 5; param2 = 2; }; }; }",
    "macrofile": "{ MacroName = M; sequence = { Events = ({ command = 1; delay = 0; page = 7; argument = 4; }); }; }",
    "settings": "{ Profiles = ({ ProfileName = A; }); Macros = (); DeviceSettings = { ActiveProfile = 0; }; }",
}
# Records in which one thing is missing or wrong.
TWISTED = {
    "profilefile": [{}, {"ProfileName": 5}, {"Keys": []}, {**PROFILE, "Keys": {"4": "x", "x": {}}},
                    {**PROFILE, "AppInfo": "x"}, {**PROFILE, "BrightnessKBNormal": -9},
                    {**PROFILE, "LEDKBColors": {}}, {**PROFILE, "LEDKBColors": [{"Red": "x", "Green": 1e300}, 5]}],
    "macrofile": [{}, {"MacroName": 5}, {"sequence": {}}, {"sequence": {"Events": [5]}}, {**MACRO, "delay": "x"},
                  {"sequence": {"Events": [{}, {"page": 9}, {"argument": 2**63}]}}],
    "settings": [{}, {**SETTINGS, "DeviceSettings": {"ActiveProfile": 7}}, {**SETTINGS, "Macros": [MACRO, 5]},
                 {**SETTINGS, "Profiles": [{"ProfileName": "A"}] * 21}, {"Profiles": [PROFILE], "Macros": []},
                 {**SETTINGS, "DeviceSettings": {"ActiveProfile": "0", "LastMacroID": 9, "ProfileOSDOn": 2}},
                 {**SETTINGS, "Profiles": [5, {"ProfileName": 5, "LEDKBColors": 5, "Keys": {"4": 5, "5": {}}}]},
                 {**SETTINGS, "Macros": [{**MACRO, "delay": []}, {**MACRO, "sequence": 5}]},
                 {"Default Settings": {"Profiles": [{"ProfileName": "A"}], "Macros": [MACRO]}},
                 {"Default Settings": {**SETTINGS, "Profiles": []}}],
}


def nested(levels):
    return [nested(levels - 1)] if levels > 1 else []


# Profiles that a reader accepts and the settings refuse: containers nested too deeply, and more text than they may
# have.
LARGE = ["x" * 5000] * 440
UNBOUNDED = {"deep": {"other": nested(505)}, "large": {"other": LARGE}, "larger": {"other": LARGE, "another": LARGE}}

# Each dictionary is both a choice of keyboards and a keyboard for which kestractl makes a udev rule.
KEYBOARD = {"Vendor": 1204, "Product": 4660, "Serial": "AB 12", "Path": "usb-0:1.2:1.0", "Id": "04b4-1234", "Name": "K"}
DEVICES = [
    {**KEYBOARD, "Devices": [KEYBOARD, KEYBOARD]}, {**KEYBOARD, "Serial": "", "Devices": []},
    {**KEYBOARD, "Serial": 'A", RUN+="/bin/sh"', "Devices": [{**KEYBOARD, "Vendor": 65536}]},
    {**KEYBOARD, "Serial": "A\nRUN", "Devices": [{**KEYBOARD, "Serial": 5}]}, {**KEYBOARD, "Serial": "A*"},
    {**KEYBOARD, "Serial": "", "Path": "a\"\nACTION", "Devices": {}}, {**KEYBOARD, "Id": "../a\nb"},
    {**KEYBOARD, "Serial": "A$x"}, {"Devices": [KEYBOARD, 5]}, {**KEYBOARD, "Vendor": 0, "Product": 0},
    {**KEYBOARD, "Devices": [{**KEYBOARD, "Serial": "", "Path": "", "Product": -1}]},
]

EVENT_DATA = base64.b64encode(plistlib.dumps({"command": 1, "page": 12, "mark": [0.5]}, fmt=plistlib.FMT_BINARY))
MACRO_TEXTS = {
    "taps": "name \"Combo \\\"\\u0041\\\\\"\n# c\npress Left Shift\ntap A for 20 ms # c\nrelease Left Shift\n",
    "buttons": "click 1\r\nclick 9 for 1.5 s\r\npress button 2\r\nwait 0 ms\r\nrelease button 2\r\n",
    "waits": "\ufeffwait 100 ms\n\twait 1 s\npress 0xE8\npause 3 ms\npress ;\nwait 2147483647 ms",
    "data": f"event {EVENT_DATA.decode()}\nevent AAAA\n",
    "keys": "press 4\npress 0x04\npress LeftShift\nrelease Numpad 7\npress M1\n",
    "wrong": "tap Hyper\nclick 10\njump\nname x\n",
}

ENTRIES = {
    "plain": "[Desktop Entry]\nType=Application\nName=Game\nExec=true\n",
    "codes": "[Desktop Entry]\nType=Application\nName=A\nName[de]=B\nIcon=i\nExec=true %i --t=%c %k %U %% \"a b\" $X\n",
    "escapes": "[Desktop Entry]\nType=Application\nName=\\s\\n\\t\\\\\nExec=true \"\\\\\"\\\\`\"\nPath=/\n",
    "flags": "# c\n[Other]\nExec=a\n[Desktop Entry]\nType=Application\nTryExec=true\nHidden=false\nTerminal=true\n"
             "Exec=a\n",
    "path": "[Desktop Entry]\r\nType=Application\r\nExec=/bin/true ../a\r\nStartupWMClass=Game\r\n",
    "relative": "[Desktop Entry]\nType=Application\nExec=../bin/true\n",
    "empty": "[Desktop Entry]\nType=Application\nExec=\"\" a\n",
    "open": "[Desktop Entry]\nExec=\"a %x\n[Desktop Action a]\nExec=b\n",
}

BUNDLES = [
    {"CFBundleName": "Game", "CFBundleExecutable": "game", "CFBundleIdentifier": "org.game", "CFBundleSignature": "??"},
    {"CFBundleExecutable": "data"}, {"CFBundleExecutable": "../../../bin/sh"}, {"CFBundleExecutable": ".."},
    {"CFBundleExecutable": "folder"}, {"CFBundleExecutable": "../MacOS/game"},
    {"CFBundleExecutable": 5, "CFBundleName": ["x"]}, {},
]

CLIENT = {"ProductID": 271, "ResponseMsgPortName": "Client0", "Source App": "org.client"}
NEW_PROFILE = {"DeviceSettingsDictionary": {**PROFILE, "ProfileName": "C"}}
EVENT = {"command": 0, "delay": 5, "page": 7, "argument": 5}
PRESS, RELEASE, REMOVE, ATTACH, TIME, GAME_MODE, MACRO_KEY, VANISHED, FRONT, BRIGHTNESS = range(50, 60)


def step(number, data):
    return bytes([number]) + struct.pack(">H", len(data)) + data


def request(number, **values):
    return step(number, xml({**CLIENT, **values}))


def bound(**application):
    return {"ProfileName": "C", "AutoSwitchOn": 1, "AppInfo": application}


def actions(*pairs):
    return b"".join(bytes(pair) for pair in pairs)


def requests():
    """Sequences of steps as fuzz/requestfuzz.cpp reads them; every command is in one of them."""
    tap = actions((PRESS, 4), (TIME, 2), (RELEASE, 4))
    return {
        "open": request(0, DefaultQlPlistPath="/none/Kestra.plist", ProductName="Kestra", IsDeviceWired=1) + request(4)
        + request(14) + request(38),
        "profiles": request(5, **NEW_PROFILE) + request(6, ProfileID=0, **NEW_PROFILE) + request(10, ProfileID=1)
        + request(9, ProfileID=0) + request(7, AllProfiles=[PROFILE, PROFILE]) + request(4),
        "macros": request(32, MacroContents=MACRO) + request(25, MacroContents={"MacroName": "X", "macroID": 0})
        + request(22, macroID=1) + request(27, IndexOfMacroSequence=0) + request(33, macroID=0),
        "events": request(28, macroID=0, sequenceIdx=1) + request(24, macroID=0, sequenceIdx=1, sequence=EVENT)
        + request(34, macroID=0, delay=1, HasNoDelay=False) + request(37, macroID=0, sequenceIdx=1, delay=7)
        + request(23, macroID=0, macroEventTableIndex=0),
        "recording": request(18, macroID=0, isAppendRecording=1) + tap + request(19)
        + request(20, macroID=0, isAppendRecording=1) + tap,
        "captures": request(29) + tap + request(30) + request(21) + actions((PRESS, 5), (VANISHED, 0), (RELEASE, 5)),
        "keys": actions((PRESS, 58), (TIME, 9), (PRESS, 59), (TIME, 9), (RELEASE, 58), (GAME_MODE, 0), (RELEASE, 59))
        + actions((PRESS, 60), (FRONT, 1), (BRIGHTNESS, 2), (REMOVE, 0), (ATTACH, 0), (PRESS, 4)),
        "onthefly": actions((MACRO_KEY, 0), (PRESS, 4), (RELEASE, 4), (PRESS, 5), (TIME, 3), (RELEASE, 5))
        + actions((MACRO_KEY, 0)),
        "endings": request(29) + actions((PRESS, 4), (REMOVE, 0), (ATTACH, 0)) + request(21) + request(38)
        + request(18, macroID=0, isAppendRecording=0) + actions((VANISHED, 0), (MACRO_KEY, 0), (MACRO_KEY, 0))
        + request(29) + actions((PRESS, 41), (TIME, 200), (RELEASE, 41)) + request(29) + actions((MACRO_KEY, 0)),
        "recordings": request(20, macroID=0, isAppendRecording=1) + request(18, macroID=0, isAppendRecording=0)
        + request(20, macroID=0, isAppendRecording=0) + request(18, macroID=1, isAppendRecording=1) + tap
        + request(20, macroID=0, isAppendRecording=1) + request(20, macroID=1, isAppendRecording=1)
        + actions((REMOVE, 0)) + request(18, macroID=0, isAppendRecording=0) + request(29),
        "rows": request(23, macroID=0, macroEventTableIndex=9) + request(24, macroID=0, sequenceIdx=9, sequence=EVENT)
        + request(28, macroID=0, sequenceIdx=-1) + request(34, macroID=0, HasNoDelay=True)
        + request(34, macroID=0, HasNoDelay=False) + request(37, macroID=0, sequenceIdx=9, delay=7)
        + request(10, ProfileID=1.0) + request(10, ProfileID=0.5) + request(9, ProfileID=7) + request(6, ProfileID=7),
        "limits": request(7, AllProfiles=[{}] * 20) + request(5, DeviceSettingsDictionary={})
        + request(7, AllProfiles=[]) + request(7, AllProfiles=[{}] * 21) + request(7, AllProfiles=[{}])
        + request(9, ProfileID=0),
        "large": step(5, plistlib.dumps({"DeviceSettingsDictionary": {"other": LARGE}}, fmt=plistlib.FMT_BINARY)),
        "ports": request(4, ResponseMsgPortName="QuillCoreEngineMsgPort") + request(4, ResponseMsgPortName="no port")
        + request(29, ResponseMsgPortName=""),
        "front": request(5, DeviceSettingsDictionary=bound(identifier="game")) + request(10, ProfileID=0)
        + actions((FRONT, 1)) + request(9, ProfileID=1) + request(9, ProfileID=1) + actions((FRONT, 2))
        + request(5, DeviceSettingsDictionary=bound(signature="other")) + actions((FRONT, 0)) + request(10, ProfileID=0)
        + request(6, ProfileID=1, DeviceSettingsDictionary=bound(executable="sh")) + actions((FRONT, 1)),
        "nonsense": request(47, ProfileID="x") + request(5, DeviceSettingsDictionary=[1]) + request(10, ProfileID=-1)
        + b"\x04\x00\x02{}" + request(5, DeviceSettingsDictionary={"Keys": "x"})
        + request(6, ProfileID=0, DeviceSettingsDictionary={"Keys": {"4": 5}}) + request(7, AllProfiles=[{}, 5])
        + request(32, MacroContents={"sequence": {"Events": [5]}}) + request(24, macroID=0, sequenceIdx=0, sequence=5),
    }


def xml(tree):
    lines = plistlib.dumps(tree, fmt=plistlib.FMT_XML).split(b"\n")
    return b"\n".join(line.strip() for line in lines if not line.startswith((b"<?xml", b"<!DOCTYPE")))


def write(target, name, data):
    folder = CORPUS / target
    folder.mkdir(parents=True, exist_ok=True)
    (folder / name).write_bytes(data)


def write_property_lists():
    for name, tree in TREES.items():
        write("propertylist", f"{name}.binary", plistlib.dumps(tree, fmt=plistlib.FMT_BINARY))
        text = plistlib.dumps(tree, fmt=plistlib.FMT_XML).split(b"\n")
        data = b"\n".join(line for line in text if not line.startswith(b"<!DOCTYPE"))
        write("propertylist", f"{name}.xml", data)
    for name, text in OLD_STYLE.items():
        write("propertylist", f"{name}.text", text.encode())
    for name, text in XML.items():
        write("propertylist", f"{name}.xml", text.encode())
    for name, data in RAW.items():
        write("propertylist", f"{name}.binary", data)


def write_records():
    for target, tree in (("profilefile", PROFILE), ("macrofile", MACRO), ("settings", SETTINGS)):
        write(target, "whole.binary", plistlib.dumps(tree, fmt=plistlib.FMT_BINARY))
        write(target, "whole.xml", xml(tree))
        write(target, "whole.text", OLD_RECORDS[target].encode())
        for number, twisted in enumerate(TWISTED[target]):
            write(target, f"twisted{number}.xml", xml(twisted))
    for name, fields in UNBOUNDED.items():
        tree = {**SETTINGS, "Profiles": [{**PROFILE, **fields}]}
        write("settings", f"{name}.binary", plistlib.dumps(tree, fmt=plistlib.FMT_BINARY))


def history_file(*entries, compress=False):
    """A file with these entries. The target computes the digests of the frames."""
    data = b"QKhist1\n"
    for number, entry in enumerate(entries, start=1):
        tree = {"i": number, "t": 1795000000000 + number, "a": "client", **entry}
        frame = plistlib.dumps(tree, fmt=plistlib.FMT_BINARY)
        frame = b"z" + struct.pack(">I", len(frame)) + zlib.compress(frame) if compress else b"p" + frame
        data += struct.pack("<I8x", len(frame)) + frame
    return data


def changed(index, **fields):
    """The difference of one record, whose fields have the given old and new values."""
    inside = {key: {"o": old, "n": new} for key, (old, new) in fields.items()}
    return {"l": [{"i": index, "j": index, "c": {"d": inside}}]}


def write_histories():
    dim = {"d": {"Profiles": changed(0, BrightnessKBNormal=(4, 3))}}
    dimmer = {"d": {"Profiles": changed(0, BrightnessKBNormal=(3, 2))}}
    rename = {"d": {"Profiles": changed(1, ProfileName=("Z", "B"))}}
    key = {"Keys": {"d": {"4": {"d": {"command": {"o": 45, "n": 20}}}}}}
    disable = {"d": {"Profiles": {"l": [{"i": 0, "j": 0, "c": {"d": key}}]}}}
    event = {"command": 1, "delay": 10, "page": 7, "argument": 4}
    events = {"sequence": {"d": {"Events": {"l": [{"i": 1, "j": 1, "o": [event] * 2, "n": []}]}}}}
    cut = {"d": {"Macros": {"l": [{"i": 0, "j": 0, "c": {"d": events}}]}}}
    macro = {"MacroName": "Gone", "macroID": 2, "sequence": {"Events": [event]}}
    delete = {"d": {"Macros": {"l": [{"i": 1, "j": 1, "o": [macro], "n": []}]}}, "w": {"Kind": "macro deleted"}}
    choose = {"d": {"DeviceSettings": {"d": {"ActiveProfile": {"o": 1, "n": 0}}}}}
    other = {"d": {"Other": {"n": 1}}, "w": {"Kind": "several", "Count": 1}}
    every = (dim, rename, disable, cut, delete, choose, dimmer)
    for name, data in {
        "changes": history_file(*every),
        "compressed": history_file(*every, compress=True),
        "undone": history_file(*every, {"k": 1, "x": 7}, {"k": 2, "x": 7}, dim, {"k": 1, "x": 10}),
        "joined": history_file(dim, {**dimmer, "r": 1}, {"k": 3, "r": 2}),
        "gap": history_file(dim, {"k": 4}, dimmer),
        "misfit": history_file(other, dim),
        "write": history_file(dim, {**dimmer, "s": bytes(8)}),
        "wrong": history_file({"i": 2**63 - 1}, {"i": -1}, {"t": -(2**63)}, {"k": 99}, {"x": 2**32 + 1, "k": 1}),
        "torn": history_file(*every)[:-20],
        "bomb": b"QKhist1\n" + struct.pack("<I8x", 9) + b"z" + struct.pack(">I", 2**32 - 1) + bytes(4),
    }.items():
        write("history", name, data)


def main():
    write_property_lists()
    write_records()
    for name, text in MACRO_TEXTS.items():
        write("macrotext", f"{name}.text", text.encode())
    write_histories()
    for name, text in ENTRIES.items():
        write("desktopentry", name, text.encode())
    for number, information in enumerate(BUNDLES):
        write("bundle", f"{number}.xml", xml(information))
    for number, tree in enumerate(DEVICES):
        write("devices", f"{number}.xml", xml(tree))
    for name, data in requests().items():
        write("request", name, data)


if __name__ == "__main__":
    main()
