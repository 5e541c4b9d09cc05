#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The prose of each kind of text is found, and each turn of phrase in it; code and names are not."""

import unittest

from projectchecks import Source
from prose import PATTERNS, check_prose, count, rates

EXAMPLES = {
    "tell": "The daemon tells the window of it.",
    "what-clause": "What the user has typed is kept.",
    "is-no": "A macro without events is no macro.",
    "anybody": "Nobody waits for the reply.",
    "let-go": "The keyboard lets go of the key.",
    "is-to": "The key is to be released.",
    "stands": "The name stands before the value.",
    "as-it-is": "The file is left as it is.",
    "goes-on": "The macro goes on by itself.",
    "so-that": "The file is replaced, so that nothing is lost.",
    "take-over": "The daemon takes over the keyboard.",
    "too": "Macros are played, too.",
}


def found(path, text):
    """The patterns found in one file, by kind."""
    _, places = count([Source(path, text)])
    return {kind: {name for name, hits in patterns.items() if hits} for kind, patterns in places.items()}


class Patterns(unittest.TestCase):
    def test_each_is_found_in_its_example_and_in_no_other(self):
        self.assertEqual(EXAMPLES.keys(), PATTERNS.keys())
        for name, example in EXAMPLES.items():
            with self.subTest(name):
                self.assertEqual(found("README.md", example), {"documents": {name}})

    def test_ordinary_sentences_are_left_alone(self):
        for sentence in ("What is a macro?", "There is no daemon.", "The window shows what the user typed.",
                         "It takes two keys.", "The gift is wrapped."):
            self.assertEqual(found("README.md", sentence), {"documents": set()}, sentence)


class Kinds(unittest.TestCase):
    def test_the_prose_of_each_kind_of_file_is_found(self):
        told = "Nobody waits."
        for path, text, kind in (
                ("base/a.cpp", f"int x; // {told}\n", "comments"),
                ("base/a.h", f"/* {told} */\nint x;\n", "comments"),
                ("tools/a.py", f'# {told}\nx = 1\n', "comments"),
                ("tools/a.py", f'"""{told}"""\n', "comments"),
                ("cmake/a.cmake", f"set(x) \n# {told}\n", "comments"),
                ("tests/a.cpp", f"// {told}\n", "tests"),
                ("tests/a.cpp", "    void nobodyWaits();\n", "test names"),
                ("tests/cases/a.txt", f"# {told}\npress A\n", "tests"),
                ("tests/cases/nobody-waits.txt", "press A\n", "test names"),
                ("cli/a.cpp", f'print("{told}");\n', "messages"),
                ("docs/a.md", told, "documents"),
                ("docs/man/a.1", f".TP\n{told}\n", "documents"),
                ("resources/help/en/a.html", f"<p>{told}</p>", "help"),
                ("resources/texts/en/a.ts", f"<message><translation>{told}</translation></message>", "window")):
            with self.subTest(path):
                self.assertIn("anybody", found(path, text)[kind])

    def test_code_is_no_prose(self):
        for path, text in (("base/a.cpp", 'auto nobody = u"Nobody waits."_s;\n'), ("docs/a.md", "```\nnobody\n```\n`nobody`\n"),
                           ("cli/a.cpp", 'Key{"nobody"};\n'), ("resources/help/en/a.html", "<style>nobody</style>")):
            self.assertFalse(any("anybody" in names for names in found(path, text).values()), path)

    def test_a_sentence_goes_on_in_the_next_line_of_a_comment(self):
        self.assertIn("is-to", found("base/a.cpp", "// The key is\n// to be released.\n")["comments"])

    def test_a_rate_counts_10000_words(self):
        words, places = count([Source("README.md", "Nobody " + "waits " * 99)])
        self.assertEqual(rates(words, places)["documents"]["anybody"], 100)


class Check(unittest.TestCase):
    def test_more_than_the_ceiling_is_a_finding(self):
        findings = check_prose([Source("README.md", "Nobody waits.")])
        self.assertTrue(any("documents: anybody" in finding and "README.md" in finding for finding in findings))

    def test_a_missing_kind_is_a_finding(self):
        self.assertIn("no text of the kind help", check_prose([Source("README.md", "The daemon waits.")]))


if __name__ == "__main__":
    unittest.main()
