#!/usr/bin/env python3
"""No file may name what only its writers know. Usage: check_words.py [ROOT], or check_words.py --self-test.

The code speaks as this system's own: of no paper behind it, of no machine it was written on, of no download host.
"""
import pathlib
import re
import sys

# Spelled apart, so that this file passes its own check.
FORBIDDEN = {
    "names a paper behind the code": re.compile(r"\bspec" r"ifications?\b|\bspec" r"\.md\b|\bthe sp" r"ec\b", re.I),
    "names a chapter": re.compile(r"\bPar" r"ts? \d+\.\d"),
    "names a path of one machine": re.compile(r"(?<![\w.])/(?:wo" r"rk|ro" r"ot|t" r"mp)/\w"),
    "names a download host": re.compile(r"\b(?:py" r"pi\.org|npm" r"js\.(?:com|org)|crates\.i" r"o|deb\.deb" r"ian\.org)\b"),
}
SKIPPED_FOLDERS = {".git", "build", "out"}
SAMPLES = ["as the sp" + "ecification says", "see Par" + "t 3.1", "open(\"/t" + "mp/x\")", "from py" + "pi.org",
           "as the sp" + "ec says"]
HARMLESS = ["a part of 3.1 mm", "Part of the record", "specific", "/tmpfs/", "special", "networks/work/"]


def complaints_in(text):
    for number, line in enumerate(text.splitlines(), 1):
        for why, pattern in FORBIDDEN.items():
            if pattern.search(line):
                yield number, why


def check(root):
    for path in sorted(root.rglob("*")):
        name = path.relative_to(root)
        if path.is_file() and not SKIPPED_FOLDERS & set(name.parts):
            text = path.read_bytes().decode("utf-8", errors="replace")
            for number, why in complaints_in(text):
                yield f"{name.as_posix()}:{number}: {why}"


def self_test():
    wrong = [s for s in SAMPLES if not list(complaints_in(s))] + [s for s in HARMLESS if list(complaints_in(s))]
    print(f"{len(SAMPLES) + len(HARMLESS)} lines, wrong: {wrong}")
    return wrong


def main():
    if sys.argv[1:] == ["--self-test"]:
        return 1 if self_test() else 0
    found = list(check(pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(__file__).parents[2]))
    print("\n".join(found) if found else "no forbidden word")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
