# SPDX-License-Identifier: MIT
"""Counts turns of phrase that plain English does without, per 10,000 words and kind of text.

Run as a program it prints the table: prose.py ROOT [--show KIND] (`--show`: each place of this kind as well)."""

import html
import re
import sys
from pathlib import PurePosixPath

PATTERNS = {
    "tell": r"\b(?:tells?|told|telling)\b",
    # A sentence whose subject is a clause. Questions and "What X is" in a table of contents are not told apart.
    "what-clause": r"(?:^|[.:;!?][ ]+)What\b[^?.]*(?:\.|$)",
    "is-no": r"(?<!there )(?<!There )\b(?:is|are|was|were) (?:no|none)\b",
    "anybody": r"\b(?:nobody|somebody|whoever)\b",
    "let-go": r"\b(?:let|lets|letting) go\b|\b(?:give|gives|giving|given|gave) (?:it |them )?back\b",
    "is-to": r"\b(?:is|are|was|were) to (?:be\b|[a-z]+\b)",
    "stands": r"\b(?:stands?|bears?|heeds?)\b",
    "as-it-is": r"\bas (?:it|they) (?:is|are|stands?)\b",
    "goes-on": r"\b(?:go|goes|going|went) on by\b",
    "so-that": r", so that\b",
    "take-over": r"\b(?:take|takes|taking|took|taken) (?:it |them )?over\b",
    "too": r", too\b|\b[Ll]ikewise\b",
}
COMPILED = {name: re.compile(pattern, re.MULTILINE | re.IGNORECASE if name in ("tell", "anybody") else re.MULTILINE)
            for name, pattern in PATTERNS.items()}

# The most per 10,000 words that each kind of text may have. Lower a number when a text has become better.
CEILINGS = {
    "comments": {"is-no": 0.3, "stands": 0.3, "as-it-is": 0.3},
    "documents": {},
    "help": {},
    "messages": {},
    "test names": {},
    "tests": {"tell": 0.4, "is-no": 0.8, "anybody": 0.4},
    "window": {},
}

CODE_SUFFIXES = {".cpp", ".h", ".inc"}
C_TOKEN = re.compile(r'//[^\n]*|/\*.*?\*/|R"(\w*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'', re.DOTALL)
HASH_SUFFIXES = {".py", ".sh", ".cmake", ".yml"}


def joined_lines(comments):
    """Comments that follow one another on lines of their own are one text."""
    text = []
    previous_end = None
    for line, comment in comments:
        text.append((" " if previous_end == line - 1 else "\n") + comment)
        previous_end = line
    return "".join(text)


def code_comments(text):
    comments = []
    for match in C_TOKEN.finditer(text):
        token = match.group(0)
        if token.startswith(("//", "/*")):
            comments.append((text.count("\n", 0, match.start()), token.strip("/*!<").strip()))
    return joined_lines(comments)


def code_literals(text):
    """Sentences among the literals: those with a blank in them, adjacent ones joined."""
    parts = []
    end = None
    for match in C_TOKEN.finditer(text):
        token = match.group(0)
        if not token.startswith('"'):
            continue
        if end is not None and re.fullmatch(r"\s*(?:u)?", text[end:match.start()]):
            parts[-1] += token[1:-1]
        else:
            parts.append(token[1:-1])
        end = match.end()
    return "\n".join(part for part in parts if " " in part)


def hash_comments(text):
    comments = [(number, line.strip().lstrip("#! ")) for number, line in enumerate(text.splitlines())
                if line.lstrip().startswith("#")]
    return joined_lines(comments) + "\n" + "\n".join(re.findall(r'"""(.*?)"""', text, re.DOTALL))


def markdown_text(text):
    text = re.sub(r"^```.*?^```", "", text, flags=re.DOTALL | re.MULTILINE)
    text = re.sub(r"`[^`\n]*`", "X", text)
    return re.sub(r"(?<!\n)\n(?=[a-zA-Z(*`\[ ])(?!\s*[-*|#])", " ", text)


def markup_text(text):
    """A page of the help book or a string table: what a reader sees of it."""
    translations = re.findall(r"<translation>(.*?)</translation>", text, re.DOTALL)
    text = "\n".join(translations) if translations else text
    text = re.sub(r"<(?:style|script).*?</(?:style|script)>", "", text, flags=re.DOTALL)
    text = re.sub(r"</?(?:p|li|h\d|dt|dd|td|th|tr|title|div)\b[^>]*>", "\n\n", text)
    text = html.unescape(re.sub(r"<[^>]+>", "", text))
    return re.sub(r"(?<!\n)\n(?!\n)", " ", text)


def manual_text(text):
    lines = [re.sub(r"\\f.|\\", "", re.sub(r"^\.\w+ ?", "", line)) for line in text.splitlines()
             if not line.startswith(('.\\"', "'"))]
    return "\n".join(lines)


def test_names(text):
    names = re.findall(r"^\s+void (\w+)\(\);", text, re.MULTILINE)
    return "\n".join(re.sub(r"([A-Z])", lambda match: " " + match.group(1).lower(), name) for name in names)


def texts_of(source):
    """The texts of a file as pairs of kind and text."""
    suffix = PurePosixPath(source.path).suffix
    name = PurePosixPath(source.path).name
    is_test = source.is_under("tests", "fuzz", "bench")
    if suffix in CODE_SUFFIXES:
        yield "tests" if is_test else "comments", code_comments(source.text)
        if is_test:
            yield "test names", test_names(source.text)
        elif source.is_under("cli", "daemon"):
            yield "messages", code_literals(source.text)
    elif is_test and suffix == ".txt" and name != "CMakeLists.txt":  # a case of a table test
        yield "tests", hash_comments(source.text)
        yield "test names", PurePosixPath(source.path).stem.replace("-", " ")
    elif suffix in HASH_SUFFIXES or name == "CMakeLists.txt" or source.text.startswith("#!"):
        yield "tests" if is_test else "comments", hash_comments(source.text)
    elif suffix == ".md":
        yield "documents", markdown_text(source.text)
    elif suffix == ".1":
        yield "documents", manual_text(source.text)
    elif source.is_under("resources/help/en") and suffix == ".html":
        yield "help", markup_text(source.text)
    elif source.is_under("resources/texts/en") and suffix == ".ts":
        yield "window", markup_text(source.text)


def count(sources):
    """By kind: the number of words, and the places of each pattern as pairs of path and text."""
    words, places = {}, {}
    for source in sources:
        if source.path == "tests/project/prose.py" or source.path == "tests/project/testprose.py":
            continue
        for kind, text in texts_of(source):
            words[kind] = words.get(kind, 0) + len(re.findall(r"[A-Za-z][A-Za-z'’-]*", text))
            found = places.setdefault(kind, {name: [] for name in PATTERNS})
            for name, pattern in COMPILED.items():
                found[name] += [(source.path, text[max(0, match.start() - 50):match.end() + 40].replace("\n", " "))
                                for match in pattern.finditer(text)]
    return words, places


def rates(words, places):
    """Occurrences per 10,000 words, by kind and pattern."""
    return {kind: {name: 10_000 * len(found) / max(words[kind], 1) for name, found in patterns.items()}
            for kind, patterns in places.items()}


def check_prose(sources):
    """No kind of text has more of a turn of phrase than its ceiling allows, and no ceiling is missing."""
    words, places = count(sources)
    findings = [f"no text of the kind {kind}" for kind in CEILINGS if not words.get(kind)]
    for kind, patterns in rates(words, places).items():
        for name, rate in patterns.items():
            ceiling = CEILINGS.get(kind, {}).get(name, 0)
            if round(rate, 1) > ceiling:
                paths = sorted({path for path, _ in places[kind][name]})
                findings.append(f"{kind}: {name} {rate:.1f} times per 10,000 words, at most {ceiling} may be; it is in "
                                + ", ".join(paths[:8]) + (" …" if len(paths) > 8 else ""))
    return findings


def main(arguments):
    from projectchecks import read_sources
    words, places = count(read_sources(arguments[0]))
    table = rates(words, places)
    print(f"{'':<12}{'words':>8}" + "".join(f"{name:>12}" for name in PATTERNS))
    for kind in sorted(table):
        print(f"{kind:<12}{words[kind]:>8}" + "".join(f"{table[kind][name]:>12.1f}" for name in PATTERNS))
    if len(arguments) == 3 and arguments[1] == "--show":
        for name, found in places[arguments[2]].items():
            for path, text in found:
                print(f"{name}: {path}: …{text}…")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
