#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the seeds in fuzz/corpus: small property lists of every form, one for each thing that a reader decides on."""

import datetime
import pathlib
import plistlib
import struct

CORPUS = pathlib.Path(__file__).resolve().parent / "corpus"

TREES = {
    "profile": {"ProfileName": "A", "Keys": {"4": {"command": 45, "param1": 4, "param2": 0}}, "GameLightingOn": True},
    "macro": {"MacroName": "Ä", "sequence": {"Events": [{"command": 1, "delay": 10, "page": 7, "argument": 4}] * 2}},
    "scalars": [0, 255, 256, 65536, 2**32, -1, 2**63, 1.5, True, False, b"", b"\0\xff", "", "x" * 15, "\U0001f642",
                datetime.datetime(2011, 5, 17, 9, 30)],
    "empty": {"": {}, "a": []},
}

OLD_STYLE = {
    "dictionary": '{ a = b; "c d" = ( 1, "\\n\\U00e4\\341\\"", \'x\' ); /* e */ f = <00 ff>; // g\n }',
    "array": "( {}, ( ), <>, /usr/bin/true, )",
    "strings": '/* a */ a = b; "c d" = "\\n\\U00e4"; // e\nf = { g = ( h ) };',
}

XML = {
    "range": "<plist><array><real>1e400</real><real>-1e-400</real></array></plist>",
}


def binary(objects, reference_size=1):
    """A binary file of raw objects, the first one its root."""
    body, table = b"bplist00", b""
    for data in objects:
        table += struct.pack(">H", len(body))
        body += data
    trailer = struct.pack(">6xBBQQQ", 2, reference_size, len(objects), 0, len(body))
    return body + table + trailer


RAW = {
    "pairs": binary([bytes((0xA2, i, i)) for i in range(1, 25)] + [b"\x10\x01"]),
    "cycle": binary([b"\xa1\x01", b"\xd1\x02\x00", b"\x51a"]),
    "wide": binary([b"\xa1\x00\x01", b"\x14" + bytes(8) + b"\x80" + bytes(7)], 2),
    "surrogate": binary([b"\xa2\x01\x02", b"\x61\xd8\x3d", b"\x22\x3f\x80\x00\x00"]),
    "counts": binary([b"\xaf\x10\x02\x01\x02", b"\x5f\x11\x00\x01a", b"\x4f\x13" + bytes(7) + b"\x01a"]),
}


def main():
    CORPUS.mkdir(exist_ok=True)
    for name, tree in TREES.items():
        (CORPUS / f"{name}.binary").write_bytes(plistlib.dumps(tree, fmt=plistlib.FMT_BINARY))
        text = plistlib.dumps(tree, fmt=plistlib.FMT_XML).split(b"\n")
        (CORPUS / f"{name}.xml").write_bytes(b"\n".join(line for line in text if not line.startswith(b"<!DOCTYPE")))
    for name, text in OLD_STYLE.items():
        (CORPUS / f"{name}.text").write_text(text, "utf-8")
    for name, text in XML.items():
        (CORPUS / f"{name}.xml").write_text(text, "utf-8")
    for name, data in RAW.items():
        (CORPUS / f"{name}.binary").write_bytes(data)


if __name__ == "__main__":
    main()
