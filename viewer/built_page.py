#!/usr/bin/env python3
"""Knows whether the checked-in page is the one that `npm run build` makes of the sources.

usage: built_page.py --note       note in page/built-from what the page was built from, after a build
       built_page.py --check      end with status 1 when sources or page have changed since
       built_page.py --self-test  check that the check finds what it must
"""

import hashlib
import pathlib
import shutil
import sys
import tempfile

NOTE = "page/built-from"
SOURCES = ("src/**/*", "public/**/*", "*.html", "package.json", "package-lock.json", "tsconfig.json", "vite*.config.ts")
PAGE = ("page/**/*",)


def digest(root, patterns):
    """One hash over names and contents of all files that `patterns` name."""
    paths = {path for pattern in patterns for path in root.glob(pattern) if path.is_file()}
    total = hashlib.sha256()
    for name, path in sorted((path.relative_to(root).as_posix(), path) for path in paths):
        if name != NOTE:
            total.update(f"{name}\0{hashlib.sha256(path.read_bytes()).hexdigest()}\n".encode())
    return total.hexdigest()


def note_text(root):
    return f"sources {digest(root, SOURCES)}\npage {digest(root, PAGE)}\n"


def is_current(root):
    note = root / NOTE
    return note.is_file() and note.read_text(encoding="utf-8") == note_text(root)


def write_note(root):
    (root / NOTE).write_text(note_text(root), encoding="utf-8")


def self_test(root):
    faults = []
    with tempfile.TemporaryDirectory() as folder:
        copy = pathlib.Path(folder) / "viewer"
        shutil.copytree(root, copy, ignore=shutil.ignore_patterns("node_modules"))
        write_note(copy)
        if not is_current(copy):
            faults.append("a page that was just built is taken for an old one")
        for name in ("src/main.ts", "index.html", "package-lock.json", "page/index.html"):
            text = (copy / name).read_bytes()
            (copy / name).write_bytes(text + b" ")
            if is_current(copy):
                faults.append(f"a change of {name} is not seen")
            (copy / name).write_bytes(text)
        (copy / "src/added.ts").write_text("", encoding="utf-8")
        if is_current(copy):
            faults.append("a new source is not seen")
    return faults


def main(arguments):
    root = pathlib.Path(__file__).resolve().parent
    if arguments == ["--note"]:
        write_note(root)
    elif arguments == ["--check"]:
        if not is_current(root):
            print("viewer/page is not what viewer/src makes: run `npm ci && npm run build` in viewer/", file=sys.stderr)
            return 1
    elif arguments == ["--self-test"]:
        for fault in (faults := self_test(root)):
            print(fault, file=sys.stderr)
        return 1 if faults else 0
    else:
        print(__doc__, file=sys.stderr)
        return 2
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
