#!/usr/bin/env python3
"""Checks that programs and libraries are built so that a fault in memory does not run what its sender chose, and that
they load no library from a folder that somebody else may write.

usage: hardened_binaries.py READELF FILE...      check the files
       hardened_binaries.py READELF --self-test FILE  check that the check finds what FILE, hardened, could lack
"""

import re
import subprocess
import sys

# What must stand in the listing of readelf, and what it means when it does not.
REQUIRED = (
    (r"Elf file type is DYN", "its place in memory is fixed (no -fPIE -pie)"),
    (r"^ +GNU_RELRO ", "its tables of addresses stay writable (no -z relro)"),
    (r"BIND_NOW|\(FLAGS_1\) .*\bNOW\b", "its tables of addresses are filled late (no -z now)"),
    (r" UND __stack_chk_fail\b", "a buffer overrun on the stack goes unseen (no -fstack-protector-strong)"),
    (r" UND __\w+_chk\b(?<!__stack_chk)", "the library's copies are not measured (no _FORTIFY_SOURCE)"),
    (r"^ +GNU_STACK .* RW +0x", "its stack can be executed"),
)
SEARCH_PATH = re.compile(r"\((?:RUNPATH|RPATH)\).*\[(.*)\]")


def faults(listing):
    for pattern, fault in REQUIRED:
        if not re.search(pattern, listing, re.MULTILINE):
            yield fault
    for folders in SEARCH_PATH.findall(listing):
        # An empty element is the current folder.
        for folder in folders.split(":"):
            if not folder.startswith(("/", "$ORIGIN")):
                yield f'it loads libraries from "{folder or "."}", wherever it is started'


def listing_of(readelf, path):
    return subprocess.run([readelf, "-W", "-d", "-l", "--dyn-syms", path], check=True, stdout=subprocess.PIPE,
                          universal_newlines=True).stdout


def self_test(good):
    """Each thing that the listing of a hardened file has, taken out or changed, and how many faults that makes."""
    samples = [("as it is", good, 0)]
    samples += [(fault, re.sub(pattern, "", good, flags=re.MULTILINE), 1) for pattern, fault in REQUIRED]
    samples += [(path, f"{good}\n 0x1d (RUNPATH) Library runpath: [{path}]", count)
                for path, count in (("/a:/b", 0), ("$ORIGIN/../lib", 0), ("/a:", 1), (":/a", 1), ("/a::/b", 1), ("lib", 1))]
    failed = 0
    for name, listing, expected in samples:
        found = list(faults(listing))
        if len(found) != expected:
            print(f"{name}: expected {expected} faults, found {found}")
            failed += 1
    print(f"{len(samples) - failed} of {len(samples)} samples as expected")
    return 1 if failed else 0


def main(arguments):
    if len(arguments) < 2:
        print(__doc__, file=sys.stderr)
        return 2
    readelf, *files = arguments
    if files[0] == "--self-test":
        return self_test(listing_of(readelf, files[1]))
    found = [f"{path}: {fault}" for path in files for fault in faults(listing_of(readelf, path))]
    for fault in found:
        print(fault)
    print(f"{len(files)} files, {len(found)} faults")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
