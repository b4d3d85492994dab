#!/usr/bin/env python3
"""Holds the sources against the rules of the house. Usage: check_layers.py [ROOT], or check_layers.py --self-test.

Rules: a room of the library includes itself and what the table of rooms (tsRtm/rooms.txt) lets it see, which is never
what stands below it there; a header at the top of a room is public, includes only such, and is reached from tsRtm.hpp; a
header in a sub-room is internal; an interface of the seam has few calls, all of them pure; a group of the tool's commands
includes itself and the shared parts; only the POSIX ground
talks to the operating system; a file is at most 600 lines long, holds no tabs, and a header says #pragma once.
"""
import pathlib
import re
import sys
import tempfile

TABLE = "tsRtm/rooms.txt"
ALL_PUBLIC = "tsRtm/tsRtm.hpp"
GROUND = "platform/posix"  # includes types, the seam and the system

# Tables may be longer than a file that one reads.
LONG_TABLES = set()
MAX_LINES = 600
MAX_CALLS = 8  # of an interface of the seam

SYSTEM_HEADERS = re.compile(
    r"^\s*#\s*include\s*<(unistd\.h|fcntl\.h|sys/.*|fstream|filesystem|ctime|time\.h|locale|locale\.h|clocale)>")
SYSTEM_CALLS = re.compile(
    r"\b(system_clock|steady_clock|high_resolution_clock|getenv|setlocale|fopen|this_thread)\b")
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"')
SOURCE_FOLDERS = ("tsRtm", "cli", "examples", "tests", "bench", "fuzz")


def read_rooms(root):
    """Folder to the set of rooms it sees, itself among them; and complaints about the table."""
    sees, handed_on, complaints = {}, {}, []
    for number, line in enumerate((root / TABLE).read_text(encoding="utf-8").splitlines(), 1):
        if not line or line.startswith("#"):
            continue
        columns = [column.strip() for column in line.split("|")]
        folder, names = columns[0], columns[1].split() if len(columns) == 3 else []
        for name in names:
            if name.rstrip("!") not in sees:
                complaints.append(f"{TABLE}:{number}: {name} is no room above this line")
        if len(columns) != 3 or folder in sees:
            complaints.append(f"{TABLE}:{number}: not three columns, or the room is there already")
            continue
        below = [name for name in names if name in sees]
        handed_on[folder] = {folder}.union(*(handed_on[name] for name in below))
        alone = {name[:-1] for name in names if name.endswith("!")}
        sees[folder] = handed_on[folder] | alone
    return sees, complaints


def room_of(path):
    """The folder of a file 'tsRtm/...', which should be a room."""
    return str(pathlib.PurePosixPath(path).relative_to("tsRtm").parent)


def is_public(sees, name):
    """Whether a file is a header at the top of a room; a sub-room is one that lies in the folder of another."""
    parents = {str(parent) for parent in pathlib.PurePosixPath(room_of(name)).parents} - {"."}
    return name.endswith(".hpp") and not parents & sees.keys()


def included(text):
    return [include.group(1) for include in map(INCLUDE.match, text.splitlines()) if include]


def check_public(root, sees):
    """Complaints about public headers that the header of all that is public does not reach."""
    if not (root / ALL_PUBLIC).is_file():
        return
    reached, to_read = set(), [ALL_PUBLIC]
    while to_read:
        name = to_read.pop()
        if name not in reached and (root / name).is_file():
            reached.add(name)
            to_read += included((root / name).read_text(encoding="utf-8"))
    for path in sorted((root / "tsRtm").rglob("*.hpp")):
        name = path.relative_to(root).as_posix()
        if is_public(sees, name) and name not in reached:
            yield f"{ALL_PUBLIC}:1: does not reach {name}, which is public"


def without_comments(text):
    """The code with comments and the insides of literals blanked; line breaks stay."""
    pattern = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"', re.S)
    return pattern.sub(lambda m: re.sub(r"[^\n]", " ", m.group()), text)


def check_room(root, sees, name, text):
    """Complaints about what a library file includes and calls."""
    if room_of(name) not in sees:
        yield 1, "lies in no room of the table"
        return
    for number, line in enumerate(text.splitlines(), 1):
        include = INCLUDE.match(line)
        if include:
            target = include.group(1)
            if not target.startswith("tsRtm/") or not (root / target).is_file():
                yield number, f'includes "{target}", which is no file below tsRtm/'
            elif room_of(target) in sees and room_of(target) not in sees[room_of(name)]:
                yield number, f"layer: {room_of(name)} may not include {target}"
            elif is_public(sees, name) and not is_public(sees, target):
                yield number, f"a public header includes {target}, which is internal"
        elif room_of(name) != GROUND and SYSTEM_HEADERS.match(line):
            yield number, f"system header outside {GROUND}: {line.strip()}"
    if room_of(name) != GROUND:
        for number, line in enumerate(without_comments(text).splitlines(), 1):
            call = SYSTEM_CALLS.search(line)
            if call:
                yield number, f"system call outside {GROUND}: {call.group()}"


def check_group(name, text):
    """Complaints about what a file of a group of commands includes: its own group, the shared parts, Commands.hpp."""
    own = str(pathlib.PurePosixPath(name).parent)
    seen = {"cli/shared"} if own == "cli/shared" else {own, "cli/shared", "cli"}
    for number, line in enumerate(text.splitlines(), 1):
        include = INCLUDE.match(line)
        if include and include.group(1).startswith("cli/"):
            if str(pathlib.PurePosixPath(include.group(1)).parent) not in seen:
                yield number, f"group: {own} may not include {include.group(1)}"


def check_seam(text):
    """Complaints about the interfaces of a header of the seam: too many calls, or a call that a ground may forget."""
    name, calls = "", 0
    for number, line in enumerate(without_comments(text).splitlines(), 1):
        begin = re.match(r"(?:class|struct) (\w+)", line)
        if begin:
            name, calls = begin.group(1), 0
        if not re.search(r"\bvirtual\b(?!\s*~)", line):
            continue
        calls += 1
        if calls == MAX_CALLS + 1:
            yield number, f"{name} has more than {MAX_CALLS} calls: split it"
        if "{" in line:
            yield number, f"{name}: a call with a body hides that a ground lacks it"


def check_shape(name, text):
    """Complaints about the shape of any source file."""
    lines = text.splitlines()
    if len(lines) > MAX_LINES and name not in LONG_TABLES:
        yield len(lines), f"{len(lines)} lines, more than {MAX_LINES}: split it"
    for number, line in enumerate(lines, 1):
        if "\t" in line:
            yield number, "tab"
            break
    if name.endswith(".hpp") and not re.search(r"^#pragma once$", text, re.M):
        yield 1, "header without #pragma once"


def check(root):
    root = pathlib.Path(root)
    sees, complaints = read_rooms(root)
    complaints += check_public(root, sees)
    for folder in SOURCE_FOLDERS:
        for path in sorted((root / folder).rglob("*.[ch]pp")):
            name = path.relative_to(root).as_posix()
            text = path.read_text(encoding="utf-8")
            found = list(check_shape(name, text))
            if folder == "tsRtm":
                found += check_room(root, sees, name, text)
                found += check_seam(text) if room_of(name) == "platform" else []
            if folder == "cli" and name.count("/") > 1:
                found += check_group(name, text)
            complaints += [f"{name}:{number}: {message}" for number, message in found]
    return complaints


# Made-up trees for the self-test: files, and the one complaint they must give (None: no complaint). All but those that
# bring their own have this table.
ROOMS = """# a comment
types          |                         |
platform       | types                   |
platform/posix | platform                | SQLite
frame          | platform platform/posix! |
fields         | frame                   |
calendar       | frame                   |
database       | fields                  |
.              | calendar database       |
"""
CASES = [
    ("clean", {"tsRtm/types/A.hpp": "#pragma once\n", "tsRtm/fields/B.cpp": '#include "tsRtm/types/A.hpp"\n'}, None),
    ("comment names a clock", {"tsRtm/frame/A.cpp": "// not system_clock\n/* getenv */\n"}, None),
    ("ground may call", {"tsRtm/platform/posix/A.cpp": "#include <unistd.h>\nauto* e = std::getenv(name);\n"}, None),
    ("door", {"tsRtm/platform/posix/P.hpp": "#pragma once\n",
              "tsRtm/frame/DefaultGround.cpp": '#include "tsRtm/platform/posix/P.hpp"\n'}, None),
    ("upwards", {"tsRtm/database/A.hpp": "#pragma once\n",
                 "tsRtm/fields/B.cpp": '#include "tsRtm/database/A.hpp"\n'}, "layer: fields"),
    ("sideways", {"tsRtm/calendar/A.hpp": "#pragma once\n",
                  "tsRtm/database/B.cpp": '#include "tsRtm/calendar/A.hpp"\n'}, "layer: database"),
    ("to the facade", {"tsRtm/A.hpp": "#pragma once\n",
                       "tsRtm/database/B.cpp": '#include "tsRtm/A.hpp"\n'}, "layer: database"),
    ("by the back door", {"tsRtm/platform/posix/P.hpp": "#pragma once\n",
                          "tsRtm/fields/A.cpp": '#include "tsRtm/platform/posix/P.hpp"\n'}, "layer: fields"),
    ("ground upwards", {"tsRtm/frame/A.hpp": "#pragma once\n",
                        "tsRtm/platform/posix/B.cpp": '#include "tsRtm/frame/A.hpp"\n'}, "layer: platform/posix"),
    ("all is reached", {ALL_PUBLIC: '#pragma once\n#include "tsRtm/fields/A.hpp"\n', "tsRtm/types/B.hpp": "#pragma once\n",
                        "tsRtm/fields/A.hpp": '#pragma once\n#include "tsRtm/types/B.hpp"\n',
                        "tsRtm/platform/posix/C.hpp": "#pragma once\n"}, None),
    ("one is not reached", {ALL_PUBLIC: "#pragma once\n", "tsRtm/fields/A.hpp": "#pragma once\n"}, "does not reach"),
    ("public shows internal", {"tsRtm/frame/A.hpp": '#pragma once\n#include "tsRtm/platform/posix/P.hpp"\n',
                               "tsRtm/platform/posix/P.hpp": "#pragma once\n"}, "which is internal"),
    ("table goes up", {TABLE: "types | frame |\nframe | |\n"}, "no room above"),
    ("table goes round", {TABLE: "types | types |\n"}, "no room above"),
    ("table tells twice", {TABLE: "types | |\ntypes | |\n"}, "there already"),
    ("table lacks a column", {TABLE: "types | platform\n"}, "three columns"),
    ("missing", {"tsRtm/types/A.cpp": '#include "tsRtm/types/B.hpp"\n'}, "no file below"),
    ("beside", {"tsRtm/types/A.cpp": '#include "B.hpp"\n'}, "no file below"),
    ("no room", {"tsRtm/attic/A.cpp": "\n"}, "no room"),
    ("no room of a room", {"tsRtm/database/tree/A.cpp": "\n"}, "no room"),
    ("group", {"cli/db/A.cpp": '#include "cli/Commands.hpp"\n#include "cli/db/B.hpp"\n#include "cli/shared/C.hpp"\n'},
     None),
    ("other group", {"cli/db/A.cpp": '#include "cli/tab/B.hpp"\n'}, "group: cli/db"),
    ("shared to a group", {"cli/shared/A.hpp": '#pragma once\n#include "cli/db/B.hpp"\n'}, "group: cli/shared"),
    ("many calls", {"tsRtm/platform/A.hpp": "#pragma once\nclass A {\n    virtual ~A() = default;\n" +
                    "    virtual void f() = 0;\n" * 9 + "};\n"}, "more than 8 calls"),
    ("two with eight", {"tsRtm/platform/A.hpp": "#pragma once\n" +
                        ("class A {\n" + "    virtual void f() = 0;\n" * 8 + "};\n") * 2}, None),
    ("hidden call", {"tsRtm/platform/A.hpp": "#pragma once\nclass A {\n    virtual bool f() { return false; }\n};\n"},
     "hides that a ground lacks it"),
    ("system header", {"tsRtm/types/A.cpp": "#include <sys/stat.h>\n"}, "system header"),
    ("streams", {"tsRtm/frame/A.cpp": "#include <fstream>\n"}, "system header"),
    ("clock", {"tsRtm/database/A.cpp": "auto t = std::chrono::steady_clock::now();\n"}, "system call"),
    ("environment", {"tsRtm/frame/A.cpp": "auto* e = std::getenv(name);\n"}, "system call"),
    ("long", {"tests/A.cpp": "\n" * 601}, "601 lines"),
    ("tab", {"cli/A.cpp": "\tint a;\n"}, "tab"),
    ("no pragma", {"tests/support/A.hpp": "int a;\n"}, "#pragma once"),
]


def self_test():
    failures = 0
    for title, files, expected in CASES:
        with tempfile.TemporaryDirectory() as folder:
            for name, content in ({TABLE: ROOMS} | files).items():
                path = pathlib.Path(folder, name)
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(content, encoding="utf-8")
            found = check(folder)
        good = found == [] if expected is None else len(found) == 1 and expected in found[0]
        if not good:
            failures += 1
            print(f"self-test '{title}': expected {expected!r}, found {found}")
    print(f"{len(CASES)} cases, {failures} failures")
    return failures


def main():
    if sys.argv[1:] == ["--self-test"]:
        return 1 if self_test() else 0
    complaints = check(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parents[2])
    print("\n".join(complaints) if complaints else "the house is in order")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
