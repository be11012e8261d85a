#!/usr/bin/env python3
"""Checks that a shared library defines exactly the given dynamic symbols.

usage: exported_symbols.py NM LIBRARY SYMBOL...
"""

import subprocess
import sys


def main(arguments):
    if len(arguments) < 3:
        print(__doc__, file=sys.stderr)
        return 2
    nm, library, *expected = arguments
    listing = subprocess.run([nm, "--dynamic", "--defined-only", "--format=posix", library],
                             check=True, stdout=subprocess.PIPE, universal_newlines=True).stdout
    exported = sorted(line.split()[0] for line in listing.splitlines() if line)
    if exported != sorted(expected):
        print(f"{library} exports {exported}, expected {sorted(expected)}")
        return 1
    print(f"{library} exports {' '.join(exported)} and nothing else")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
