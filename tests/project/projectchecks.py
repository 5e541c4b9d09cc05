# SPDX-License-Identifier: MIT
"""Rules of the repository that no compiler checks. Each check takes the sources and returns its findings as text."""

import re
from dataclasses import dataclass
from pathlib import Path, PurePosixPath

CODE_SUFFIXES = {".cpp", ".h", ".inc"}
SKIPPED_FOLDERS = {".git", "out", "__pycache__", ".cache"}
TAB_FOLDERS = ("keys", "macros", "profiles", "lighting")
MAXIMUM_MAIN_LINES = 80


@dataclass(frozen=True)
class Source:
    """One text file; `path` is relative to the repository root, with slashes."""

    path: str
    text: str

    @property
    def suffix(self):
        return PurePosixPath(self.path).suffix

    def is_code(self):
        return self.suffix in CODE_SUFFIXES

    def is_under(self, *folders):
        return any(self.path.startswith(folder + "/") for folder in folders)


def read_sources(root):
    """Every text file of the repository; build folders and pictures are left out."""
    sources = []
    for path in sorted(Path(root).rglob("*")):
        relative = path.relative_to(root)
        first = relative.parts[0]
        if first in SKIPPED_FOLDERS or first.startswith("build") or "__pycache__" in relative.parts:
            continue
        if not path.is_file() or path.is_symlink():
            continue
        try:
            sources.append(Source(relative.as_posix(), path.read_text(encoding="utf-8")))
        except UnicodeDecodeError:
            continue
    return sources


# --- include directions -------------------------------------------------------------------------------------------

LIBRARY = re.compile(r"kestra_library\(\s*(\w+)\s+SOURCES\s+(.*?)\bLINK\b", re.DOTALL)
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*"([^"]+)"', re.MULTILINE)


def library_files(sources, is_wanted):
    """The files of every library whose name `is_wanted`, as the folders' CMakeLists.txt declare them."""
    files = set()
    for source in sources:
        if PurePosixPath(source.path).name != "CMakeLists.txt":
            continue
        folder = str(PurePosixPath(source.path).parent)
        for name, listed in LIBRARY.findall(source.text):
            if is_wanted(name):
                files.update(f"{folder}/{file}" for file in listed.split())
    return files


def allowed_includes(path, records, widgets):
    """A predicate over included paths for the file at `path`; None when the file may include anything."""

    def under(*folders):
        return lambda included: included.startswith(tuple(folder + "/" for folder in folders))

    def either(*predicates):
        return lambda included: any(predicate(included) for predicate in predicates)

    def is_record(included):
        return included in records or included.endswith(".inc")

    def is_plain_platform(included):
        return included.startswith("platform/") and included not in widgets

    parts = PurePosixPath(path).parts
    folder = "app/util" if parts[:2] == ("app", "util") else parts[0]
    if folder == "app/util":
        return under("app/util")
    if folder == "platform":
        return under("platform", "app/util")
    if folder == "daemonlink":
        return either(under("daemonlink", "app/util"), is_plain_platform)
    if path in records:
        return either(under("app/util"), is_record, is_plain_platform)
    if folder in TAB_FOLDERS:
        return either(under(folder, "platform", "app/util"), is_record)
    if folder == "daemon":
        return either(under("daemon", "app/util"), is_plain_platform,
                      lambda included: is_record(included) and under("keys", "macros", "lighting")(included))
    if folder == "cli":
        return either(under("cli", "daemonlink", "app/util"), is_plain_platform, is_record)
    if folder == "app":
        return under("app", "daemonlink", "platform", *TAB_FOLDERS)
    if folder == "tools":
        return under("tools")
    return None


def check_include_directions(sources):
    records = library_files(sources, lambda name: name.endswith("_records"))
    widgets = library_files(sources, lambda name: name == "kestra_platform_widgets")
    known = {source.path for source in sources}
    findings = []
    for source in sources:
        if not source.is_code():
            continue
        allowed = allowed_includes(source.path, records, widgets)
        for included in INCLUDE.findall(source.text):
            if included.endswith(".moc"):
                continue
            if included not in known:
                findings.append(f'{source.path}: "{included}" is no path from the repository root')
            elif allowed is not None and not allowed(included):
                findings.append(f'{source.path}: must not include "{included}"')
    return findings


# --- licences -----------------------------------------------------------------------------------------------------


def needs_licence(source):
    name = PurePosixPath(source.path).name
    return (source.is_code() or source.suffix in {".py", ".sh", ".cmake"} or name == "CMakeLists.txt"
            or source.text.startswith("#!"))


def check_licence_lines(sources):
    findings = []
    for source in sources:
        head = source.text.splitlines()[:3]
        if needs_licence(source) and not any("SPDX-License-Identifier: MIT" in line for line in head):
            findings.append(f"{source.path}: has no SPDX line in its first three lines")
    return findings


# --- connects by string -------------------------------------------------------------------------------------------

STRING_CONNECT = re.compile(r"\b(SIGNAL|SLOT)\s*\(")
# QObject's connect is called by its name or with "::"; with a dot it is that of a QDBusConnection.
BUS_CONNECT = re.compile(r"[\w)]\.connect\s*\(")


def without_bus_connects(text):
    """`text` without the arguments of connects to signals of the bus."""
    kept, position = [], 0
    while match := BUS_CONNECT.search(text, position):
        kept.append(text[position:match.end()])
        position, depth = match.end(), 1
        while depth and position < len(text):
            depth += {"(": 1, ")": -1}.get(text[position], 0)
            position += 1
    return "".join(kept) + text[position:]


def check_string_connects(sources):
    """SIGNAL() and SLOT() only where a signal of the bus is connected, since Qt's D-Bus connect knows no other form, and
    SLOT() in at most one file of platform/ besides, which serves everyone else."""
    findings = []
    slot_files = set()
    for source in sources:
        if not source.is_code():
            continue
        for macro in STRING_CONNECT.findall(without_bus_connects(source.text)):
            if macro == "SLOT" and source.is_under("platform"):
                slot_files.add(source.path)
            else:
                findings.append(f"{source.path}: connects by string with {macro}()")
    if len(slot_files) > 1:
        findings.append("SLOT() is used in several files: " + ", ".join(sorted(slot_files)))
    return findings


# --- texts --------------------------------------------------------------------------------------------------------

TEXT_KEY = re.compile(r'"(lkey\w*)"')
TABLE_ID = re.compile(r'<message[^>]*\bid="([^"]*)"')


def check_texts(sources):
    """Every text key used has a text, every text is used, and none is given twice."""
    used = {}
    given = {}
    for source in sources:
        if source.is_code() and not source.is_under("tests", "bench", "fuzz"):
            for key in TEXT_KEY.findall(source.text):
                used.setdefault(key, source.path)
        elif source.suffix == ".ts":
            for key in TABLE_ID.findall(source.text):
                given.setdefault((source.path.rsplit("/", 1)[0], key), []).append(source.path)
    findings = []
    for language in {folder for folder, _ in given} or {"resources/texts/en"}:
        keys = {key for folder, key in given if folder == language}
        findings += [f"{used[key]}: {language} has no text for {key}" for key in sorted(used.keys() - keys)]
        findings += [f"{given[language, key][0]}: nothing uses {key}" for key in sorted(keys - used.keys())]
    for (_, key), paths in sorted(given.items()):
        if len(paths) > 1:
            findings.append(f"{key} is given {len(paths)} times: " + ", ".join(paths))
    return findings


# --- paths of one machine -----------------------------------------------------------------------------------------

# A home folder in an example is fine as long as it is nobody's.
MACHINE_PATH = re.compile(r"(?<![\w.$}/-])/(?:work|root|Users|builds|mnt|home/(?!user\b|someone\b|\w/)\w+)/\S*")


def check_machine_paths(sources):
    findings = []
    for source in sources:
        for number, line in enumerate(source.text.splitlines(), start=1):
            for path in MACHINE_PATH.findall(line):
                findings.append(f"{source.path}:{number}: names a path of one machine: {path}")
    return findings


# --- thin mains ---------------------------------------------------------------------------------------------------

MAIN = re.compile(r"^int main\(", re.MULTILINE)


def check_thin_mains(sources):
    findings = []
    for source in sources:
        if source.suffix != ".cpp" or source.is_under("tests", "bench", "fuzz") or not MAIN.search(source.text):
            continue
        lines = len(source.text.splitlines())
        if lines >= MAXIMUM_MAIN_LINES:
            findings.append(f"{source.path}: the main file has {lines} lines; below {MAXIMUM_MAIN_LINES} is thin")
    return findings


ALL_CHECKS = {
    "include-directions": check_include_directions,
    "licence-lines": check_licence_lines,
    "string-connects": check_string_connects,
    "texts": check_texts,
    "machine-paths": check_machine_paths,
    "thin-mains": check_thin_mains,
}

