# SPDX-License-Identifier: MIT
"""The independent reader and writer that plistcrosschecktest compares with. Three ways to run it:

  plistlib_peer.py make FOLDER COUNT SEED   writes COUNT random trees, each as N.bin.plist, N.xml.plist and N.json
  plistlib_peer.py rewrite FILE TARGET      writes the tree of FILE as TARGET.bin.plist and TARGET.xml.plist
  plistlib_peer.py describe FILE...         prints the description of each file's tree, one a line

A description is JSON in which every value is a list of its type's name and its content. Nothing is lost.
"""

import datetime
import json
import plistlib
import random
import struct
import sys

EPOCH = datetime.datetime(2001, 1, 1)


def describe(value):
    if isinstance(value, dict):
        return ["dictionary", {key: describe(element) for key, element in value.items()}]
    if isinstance(value, list):
        return ["array", [describe(element) for element in value]]
    if isinstance(value, bool):
        return ["boolean", value]
    if isinstance(value, int):
        return ["integer", str(value)]
    if isinstance(value, float):
        return ["real", struct.pack(">d", value).hex()]
    if isinstance(value, bytes):
        return ["data", value.hex()]
    if isinstance(value, datetime.datetime):
        return ["date", str(int((value - EPOCH).total_seconds()))]
    if isinstance(value, str):
        return ["string", value]
    raise TypeError(type(value))


def random_text(source):
    pools = ["abcXYZ 019_./<>&\"'", "äöпж漢字\u2028", "\U0001f642\U0010ffff", "a\n\tb"]
    pool = source.choice(pools)
    return "".join(source.choice(pool) for _ in range(source.choice([0, 1, 5, 14, 15, 16, 300])))


def random_tree(source, depth):
    kind = source.randrange(10 if depth else 6)
    if kind == 0:
        return random_text(source)
    if kind == 1:
        bits = source.choice([0, 7, 8, 16, 31, 32, 63, 64])
        number = source.choice([2**bits - 1, 2**bits, source.getrandbits(bits)])
        number = min(number, 2**64 - 1)
        return -min(number, 2**63) if source.random() < 0.4 else number
    if kind == 2:
        return source.choice([0.0, 1.0, -2.5, 1e300, source.random(), source.uniform(-1e6, 1e6)])
    if kind == 3:
        return source.random() < 0.5
    if kind == 4:
        return source.randbytes(source.choice([0, 1, 14, 15, 300]))
    if kind == 5:
        return EPOCH + datetime.timedelta(seconds=source.randrange(-(10**10), 10**10))
    size = source.choice([0, 1, 3, 14, 15, 20])
    if kind < 8:
        return [random_tree(source, depth - 1) for _ in range(size)]
    return {random_text(source): random_tree(source, depth - 1) for _ in range(size)}


def make(folder, count, seed):
    source = random.Random(seed)
    for number in range(count):
        tree = [random_tree(source, 3), random_tree(source, 3)]
        for suffix, form in (("bin", plistlib.FMT_BINARY), ("xml", plistlib.FMT_XML)):
            with open(f"{folder}/{number}.{suffix}.plist", "wb") as file:
                plistlib.dump(tree, file, fmt=form, sort_keys=source.random() < 0.5)
        with open(f"{folder}/{number}.json", "w", encoding="utf-8") as file:
            json.dump(describe(tree), file)


def rewrite(path, target):
    with open(path, "rb") as file:
        tree = plistlib.load(file)
    for suffix, form in (("bin", plistlib.FMT_BINARY), ("xml", plistlib.FMT_XML)):
        with open(f"{target}.{suffix}.plist", "wb") as file:
            plistlib.dump(tree, file, fmt=form)


def main():
    if sys.argv[1] == "make":
        make(sys.argv[2], int(sys.argv[3]), int(sys.argv[4]))
    elif sys.argv[1] == "rewrite":
        rewrite(sys.argv[2], sys.argv[3])
    else:
        for path in sys.argv[2:]:
            with open(path, "rb") as file:
                print(json.dumps(describe(plistlib.load(file)), ensure_ascii=True))


if __name__ == "__main__":
    main()
