#!/usr/bin/env python3
"""No file names a path of the machine it was written on, nor a download host. Usage: check_words.py [ROOT], or
check_words.py --self-test.
"""
import pathlib
import re
import sys

# Spelled apart, so that this file passes its own check.
FORBIDDEN = {
    "names a path of one machine": re.compile(r"(?<![\w.])/(?:wo" r"rk|ro" r"ot|t" r"mp)/\w"),
    "names a download host": re.compile(r"\b(?:py" r"pi\.org|npm" r"js\.(?:com|org)|crates\.i" r"o|deb\.deb" r"ian\.org)\b"),
}
SKIPPED_FOLDERS = {".git", "build", "out"}
SAMPLES = ["open(\"/t" + "mp/x\")", "cd /wo" + "rk/main", "from py" + "pi.org"]
HARMLESS = ["/tmpfs/", "networks/work/", "pypi"]


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
