# SPDX-License-Identifier: MIT
"""Rules of the repository that no compiler checks. Each check takes the sources and returns its findings as text."""

import posixpath
import re
from dataclasses import dataclass
from pathlib import Path, PurePosixPath

from prose import check_prose

CODE_SUFFIXES = {".cpp", ".h", ".inc"}
SKIPPED_FOLDERS = {".git", "out", "__pycache__", ".cache"}
TAB_FOLDERS = ("keys", "macros", "profiles", "lighting")
MAXIMUM_MAIN_LINES = 80


@dataclass(frozen=True)
class Source:
    """One file; `path` is relative to the repository root, with slashes."""

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
    """Every text file of the repository outside build folders."""
    # Build folders are not looked into: they are large, and may have the files of a whole system.
    entries = [entry for entry in sorted(Path(root).iterdir())
               if entry.name not in SKIPPED_FOLDERS and not entry.name.startswith("build")]
    sources = []
    for path in (path for entry in entries for path in (entry, *sorted(entry.rglob("*")))):
        relative = path.relative_to(root)
        if "__pycache__" in relative.parts:
            continue
        if not path.is_file() or path.is_symlink():
            continue
        try:
            sources.append(Source(relative.as_posix(), path.read_text(encoding="utf-8")))
        except UnicodeDecodeError:
            sources.append(Source(relative.as_posix(), ""))
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


# The folders that the files of a folder may include besides their own; of the folders around a file, the innermost
# applies. "plain platform" is platform/ without widgets, "records" are the tabs' libraries without widgets.
KEYBOARDS_MAY_USE = ("base", "plain platform", "records", "daemon/system", "daemon/engine", "daemon/settings")
ALLOWED_INCLUDES = {
    "base": (),
    "platform": ("base",),
    "daemonlink": ("base", "plain platform"),
    **{tab: ("base", "platform", "records") for tab in TAB_FOLDERS},
    "macros": ("base", "platform", "records", "typing"),
    "typing": ("base", "plain platform", "records"),
    "app": ("base", "platform", "daemonlink", "typing", *TAB_FOLDERS),
    "daemon/system": ("base", "plain platform"),
    "daemon/engine": ("base", "records"),
    "daemon/settings": ("base", "plain platform", "records", "daemon/system", "daemon/engine"),
    "daemon/keyboards": KEYBOARDS_MAY_USE,
    "daemon/keyboards/virtual": (*KEYBOARDS_MAY_USE, "daemon/keyboards"),
    "daemon/keyboards/linux": (*KEYBOARDS_MAY_USE, "daemon/keyboards"),
    "daemon/capture": (*KEYBOARDS_MAY_USE, "daemon/keyboards"),
    "daemon/launch": ("base", "plain platform", "daemon/system"),
    "daemon/frontapplication": ("base", "plain platform", "records", "daemon/system", "daemon/settings"),
    "daemon": (*KEYBOARDS_MAY_USE, "daemon/keyboards", "daemon/keyboards/virtual", "daemon/keyboards/linux",
               "daemon/capture", "daemon/launch", "daemon/frontapplication"),
    "cli": ("base", "plain platform", "daemonlink", "records", "typing"),
    "rulehelper": ("base",),
    "tools": (),
}
# A library of records counts as a folder within its tab's folder.
RECORDS_MAY_USE = ("base", "plain platform", "records")


def room_of(path):
    """The innermost folder of ALLOWED_INCLUDES around `path`; None when there is none."""
    return next((str(parent) for parent in PurePosixPath(path).parents if str(parent) in ALLOWED_INCLUDES), None)


def is_allowed_include(path, included, records, widgets):
    room, target = room_of(path), room_of(included)
    if room is None:
        return True
    allowed = RECORDS_MAY_USE if path in records else (*ALLOWED_INCLUDES[room], room)
    is_record = target in TAB_FOLDERS and (included in records or included.endswith(".inc"))
    # The daemon does not use profile files, which only clients read.
    if is_record and "records" in allowed and not (room.startswith("daemon") and target == "profiles"):
        return True
    if target == "platform" and included not in widgets and "plain platform" in allowed:
        return True
    return target in allowed


def check_include_directions(sources):
    records = library_files(sources, lambda name: name.endswith("_records"))
    widgets = library_files(sources, lambda name: name == "kestra_platform_widgets")
    known = {source.path for source in sources}
    findings = []
    for source in sources:
        if not source.is_code():
            continue
        folder = str(PurePosixPath(source.path).parent)
        if source.is_under("daemon") and folder not in ALLOWED_INCLUDES:
            findings.append(f"{source.path}: is in a room of the daemon that has no rule")
        for included in INCLUDE.findall(source.text):
            if included.endswith(".moc"):
                continue
            if included not in known:
                findings.append(f'{source.path}: "{included}" is no path from the repository root')
            elif not is_allowed_include(source.path, included, records, widgets):
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
# The names of QObject's connect are "connect" and "QObject::connect". After a dot, connect or disconnect belongs to a
# QDBusConnection.
BUS_CONNECT = re.compile(r"[\w)]\.(?:dis)?connect\s*\(")


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
    """SIGNAL() and SLOT() only connect signals of the bus, because Qt's D-Bus connect knows no other form. In addition,
    one file of platform/ may use SLOT() on behalf of all others."""
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


# --- connections to the session bus --------------------------------------------------------------------------------

BUS_CONNECTION = re.compile(r"\bQDBusConnection::(?:sessionBus\s*\(|SessionBus\b)")
BUS_CONNECTION_HOME = "platform/sessionbus.cpp"


def check_bus_connections(sources):
    """The programs connect to the session bus by platform/sessionbus.h alone."""
    return [f"{source.path}: connects to the session bus without {BUS_CONNECTION_HOME}"
            for source in sources
            if source.is_code() and source.path != BUS_CONNECTION_HOME
            and not source.is_under("tests", "bench", "fuzz", "tools") and BUS_CONNECTION.search(source.text)]


# --- readers of the settings document -------------------------------------------------------------------------------

DOCUMENT_LOOK_UP = re.compile(r"(\w*)(?:\(\))?(?:\.|->)(?:value|contains|constFind|find|take)\(\s*SettingsKeys::(\w+)")
# The readers of the document and of its records. daemon/settings/ checks, repairs and changes the document.
DOCUMENT_READERS = {"base/devicesettings.cpp", "base/document.cpp", "base/profilerecord.cpp", "keys/keymapping.cpp",
                    "lighting/backlight.cpp", "macros/macrorecord.cpp", "profiles/applicationbinding.cpp"}
# Around the document, in the factory resource.
RESOURCE_KEYS = {"defaultSettings", "deviceInfo", "lastSelectedKey"}


def check_document_look_ups(sources):
    """One place decides how each entry of the document reads. A notification (`userInfo`) is not the document."""
    return [f"{source.path}: looks up {key} in the settings document; base/document.h names its readers"
            for source in sources
            if source.is_code() and source.path not in DOCUMENT_READERS
            and not source.is_under("daemon/settings", "tests", "bench", "fuzz", "tools")
            for receiver, key in DOCUMENT_LOOK_UP.findall(source.text)
            if receiver != "userInfo" and key not in RESOURCE_KEYS]


# --- failures -------------------------------------------------------------------------------------------------------

REASON_PARAMETER = re.compile(
    r"(?<!const )\b((?:int|bool|QString)\s*[&*]\s*(?:error|problem|reason|refusal|failure|ok|isOk)\w*)\s*[,)=]")
ENUMERATION = re.compile(r"\benum(?:\s+class)?\s+(\w+)[^{;]*\{([^}]*)\}")
LINE_COMMENT = re.compile(r"//[^\n]*")
SUCCESS = re.compile(r"\b(?:ok|done|success|succeeded)\b")
# The numbers of replies and the exit codes of a program, which other programs read.
NUMBERS_WITH_SUCCESS = ("base/status.h", "cli/exitcode.h")


def check_failures(sources):
    """A function returns the reason for a failure in a Result (base/result.h): not through an out-parameter, and not as
    an enumeration that has success among the reasons."""
    findings = []
    for source in sources:
        if not source.is_code() or source.is_under("tests", "bench", "fuzz", "tools"):
            continue
        enumerations = ENUMERATION.findall(LINE_COMMENT.sub("", source.text))
        findings += [f"{source.path}: returns a reason through an out-parameter: {parameter}"
                     for parameter in REASON_PARAMETER.findall(source.text)]
        if source.path not in NUMBERS_WITH_SUCCESS:
            findings += [f"{source.path}: {name} has success among its reasons"
                         for name, body in enumerations if SUCCESS.search(body)]
    return findings


# --- texts --------------------------------------------------------------------------------------------------------

TEXT_KEY = re.compile(r'"(lkey\w*)"')
TABLE_ID = re.compile(r'<message[^>]*\bid="([^"]*)"')


def check_texts(sources):
    """Every text key used has a text, every text is used, and none is defined twice."""
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


LABEL = re.compile(r'<message id="(lkey\w*)">.*?<translation>([^<]*)</translation>')
CAPITALS = {"Quill", "QUILL", "Kestra", "KESTRA", "Expert", "MMO", "Gaming", "Keyboard", "Configurator", "Club"}
FIXED_LABELS = {"lkeyTypeText"}
LABEL_WORDS = 5


def check_label_case(sources):
    """English labels are in sentence case: only their first word, names and terms in capitals begin with a capital."""
    findings = []
    for source in sources:
        if source.suffix != ".ts" or not source.is_under("resources/texts/en"):
            continue
        for key, text in LABEL.findall(source.text):
            words = re.findall(r"[^\W\d_][\w’]*", text)
            is_label = len(words) <= LABEL_WORDS and not re.search(r"[.:;!?] ", text)
            if not is_label or key in FIXED_LABELS:
                continue
            findings += [f"{source.path}: {key}: {word!r} begins with a capital" for word in words[1:]
                         if word[0].isupper() and not word.isupper() and word not in CAPITALS]
    return findings


# --- paths of one machine -----------------------------------------------------------------------------------------

# A home folder in an example is fine if it is not that of a real user.
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


# --- the protocol and its document ----------------------------------------------------------------------------------

PROTOCOL_HEADER = "base/daemonprotocol.h"
SETTINGS_HEADER = "base/settingskeys.h"
STATUS_HEADER = "base/status.h"
PROTOCOL_DOCUMENT = "docs/daemon-protocol.md"
NAMED_CONSTANT = re.compile(r'inline constexpr Key \w+\{"([^"]+)"\};')
FORMATTED_NAME = re.compile(r'QStringLiteral\("(\w+)%1"\)')
QUOTED = re.compile(r"`([^`]+)`")


def enumerators(text, name):
    """The numbers of the enumeration `name`, as text."""
    body = re.search(r"enum class " + name + r"\b[^{]*\{(.*?)\};", text, re.DOTALL)
    return set(re.findall(r"=\s*(-?\d+),", body.group(1))) if body else set()


def section_of(text, heading):
    """The text below a heading, up to the next heading of its level or above."""
    level = heading.split(" ")[0]
    match = re.search(r"^" + re.escape(heading) + r"\s*$(.*?)(?=^#{1," + str(len(level)) + r"} |\Z)", text,
                      re.DOTALL | re.MULTILINE)
    return match.group(1) if match else ""


def table_rows(text):
    """The cells of each row of the tables in `text`, without header rows and rules."""
    rows = [[cell.strip() for cell in line.strip().strip("|").split("|")]
            for line in text.splitlines() if line.startswith("|")]
    rules = [number for number, row in enumerate(rows) if all(set(cell) <= set("-:") for cell in row)]
    headings = {number - 1 for number in rules}
    return [row for number, row in enumerate(rows) if number not in headings and number not in rules]


def names_in(cells):
    """The dictionary keys and other names that cells quote. `{...}` shows a shape; the keys in it are quoted
    separately."""
    names = set()
    for quoted in (name for cell in cells for name in QUOTED.findall(cell)):
        if quoted.startswith("{"):
            names.update(re.findall(r'"(\w+)":', quoted))
        elif re.fullmatch(r"[A-Za-z][\w ]*", quoted):
            names.add(quoted)
    return names


def difference(what, where, expected, found):
    """Compares in both directions. An empty set is also a finding."""
    findings = [f"{PROTOCOL_DOCUMENT}: has no {what} {entry}, which is in {where}" for entry in sorted(expected - found)]
    findings += [f"{where}: has no {what} {entry}, which is in {PROTOCOL_DOCUMENT}"
                 for entry in sorted(found - expected)]
    if not expected or not found:
        findings.append(f"no {what} to compare in {where if not expected else PROTOCOL_DOCUMENT}")
    return findings


def header_section(header, first, last=None):
    """The names in the part of the protocol's header from the comment `first` to the comment `last`."""
    part = header.partition(f"// {first}")[2]
    if last:
        part = part.partition(f"// {last}")[0]
    return set(NAMED_CONSTANT.findall(part)) | {name + "271" for name in FORMATTED_NAME.findall(part)}


def check_protocol_document(sources):
    """The tables of the protocol's document agree with the headers: commands, statuses, keys, notifications, ports."""
    texts = {source.path: source.text for source in sources}
    missing = [path for path in (PROTOCOL_HEADER, SETTINGS_HEADER, STATUS_HEADER, PROTOCOL_DOCUMENT) if path not in texts]
    if missing:
        return [f"{path}: is not there" for path in missing]
    header, document = texts[PROTOCOL_HEADER], texts[PROTOCOL_DOCUMENT]
    commands = table_rows(section_of(document, "## Commands"))
    messages = table_rows(section_of(document, "## Messages").partition("\n### ")[0])
    notifications = section_of(document, "### Interface org.quillkestra.DistributedNotificationCenter")
    rows = table_rows(notifications)
    findings = difference("command", PROTOCOL_HEADER, enumerators(header, "Command"),
                          {row[0].split(" ")[0] for row in commands})
    findings += difference("status", STATUS_HEADER, enumerators(texts[STATUS_HEADER], "Status"),
                           {row[0] for row in table_rows(section_of(document, "### Status codes"))})
    findings += difference("notification", PROTOCOL_HEADER, header_section(header, "Notification names"),
                           {name for row in rows for name in names_in(row[:1])}
                           | {name for name in QUOTED.findall(notifications) if name.endswith(" 271")})
    ports = {name for name in NAMED_CONSTANT.findall(header) if name.endswith("Port")}
    findings += difference("port", PROTOCOL_HEADER, ports,
                           {name for name in QUOTED.findall(section_of(document, "## Ports")) if re.fullmatch(r"\w+Port", name)}
                           - {"MessagePort"})
    # A request or reply may contain a record, so keys of the other header are permitted there.
    records = set(NAMED_CONSTANT.findall(texts[SETTINGS_HEADER]))
    keys = header_section(header, "Request keys", "Notification names")
    named = {name for row in commands for name in names_in(row[1:2] + row[3:])}
    named |= {name for row in messages for name in names_in(row[:1])} | {name for row in rows for name in names_in(row[1:2])}
    prose = set(QUOTED.findall(section_of(document, "## Messages")))
    findings += difference("key", PROTOCOL_HEADER, keys,
                           (named - (records - keys) - header_section(header, "Notification names")) | (prose & keys))
    return findings


# --- links between the documents ------------------------------------------------------------------------------------

CODE_BLOCK = re.compile(r"^(```|~~~).*?^\1", re.DOTALL | re.MULTILINE)
CODE_SPAN = re.compile(r"`[^`\n]*`")
LINK = re.compile(r"\]\(\s*<?([^)\s>]+)>?(?:\s+\"[^\"]*\")?\s*\)|^\[[^\]]+\]:\s*(\S+)|<(?:img|a)\b[^>]*?(?:src|href)=\"([^\"]+)\"",
                  re.MULTILINE)
HEADING = re.compile(r"^#{1,6}\s+(.*?)\s*#*$", re.MULTILINE)


def anchors_of(text):
    """The anchors of headings: lower case, words joined by hyphens, other characters removed."""
    headings = HEADING.findall(CODE_BLOCK.sub("", text))
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def check_links(sources):
    """Every relative link of a Markdown file leads to a file or folder of the repository, and to its heading if it
    names one."""
    texts = {source.path: source.text for source in sources}
    folders = {str(parent) for path in texts for parent in PurePosixPath(path).parents}
    findings = []
    for source in sources:
        if source.suffix != ".md":
            continue
        for groups in LINK.findall(CODE_SPAN.sub("", CODE_BLOCK.sub("", source.text))):
            link = next(group for group in groups if group)
            if re.match(r"[a-z][a-z0-9+.-]*:", link):
                continue
            file, _, anchor = link.partition("#")
            target = posixpath.normpath(posixpath.join(posixpath.dirname(source.path), file)) if file else source.path
            if target not in texts and target not in folders:
                findings.append(f"{source.path}: leads to {link}, which is not there")
            elif anchor and (target not in texts or anchor not in anchors_of(texts[target])):
                findings.append(f"{source.path}: leads to {link}, which has no such heading")
    return findings


RELEASE_HEADING = re.compile(r"^## \[(\d+\.\d+\.\d+)\] - (unreleased|\d{4}-\d\d-\d\d)$")


def check_changelog(sources):
    """The first heading of the changelog has the version of CMakeLists.txt. Only that one can be unreleased, and every
    version is above those below it."""
    texts = {source.path: source.text for source in sources}
    version = re.search(r"^project\(\w+ VERSION ([\d.]+)", texts.get("CMakeLists.txt", ""), re.MULTILINE)
    headings = [line for line in texts.get("CHANGELOG.md", "").splitlines() if line.startswith("## ")]
    if not version or not headings:
        return ["CHANGELOG.md: has no version, or CMakeLists.txt has none"]
    found = [RELEASE_HEADING.match(heading) for heading in headings]
    findings = [f"CHANGELOG.md: \"{heading}\" is not \"## [1.2.3] - \" with a date or \"unreleased\""
                for heading, match in zip(headings, found) if not match]
    if findings:
        return findings
    if found[0][1] != version[1]:
        findings.append(f"CHANGELOG.md: begins with {found[0][1]}, but the version is {version[1]}")
    findings += [f"CHANGELOG.md: {match[1]} is not released, but a later version is" for match in found[1:]
                 if match[2] == "unreleased"]
    numbers = [tuple(map(int, match[1].split("."))) for match in found]
    findings += [f"CHANGELOG.md: {later[1]} is above {earlier[1]}" for later, earlier, above, below
                 in zip(found, found[1:], numbers, numbers[1:]) if above <= below]
    return findings


ALL_CHECKS = {
    "changelog": check_changelog,
    "include-directions": check_include_directions,
    "licence-lines": check_licence_lines,
    "string-connects": check_string_connects,
    "bus-connections": check_bus_connections,
    "document-look-ups": check_document_look_ups,
    "failures": check_failures,
    "texts": check_texts,
    "label-case": check_label_case,
    "machine-paths": check_machine_paths,
    "thin-mains": check_thin_mains,
    "protocol-document": check_protocol_document,
    "links": check_links,
    "prose": check_prose,
}

