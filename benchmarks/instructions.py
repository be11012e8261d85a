#!/usr/bin/python3
"""Counts the instructions of benchmark rows, which no other load of the machine can change. Needs valgrind.

usage: instructions.py [ROW...]      e.g. steady/persons:16 (default: the rows with an aim)

For each row: instructions of one cycle and of its floor, in thousands, and their ratio.
"""

import collections
import os
import re
import subprocess
import sys
import tempfile

PROGRAM = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../build/release/bin/benchmarks")
ROWS = [f"{row}/persons:{persons}" for row in ("steady", "newPicture", "partRead/fast") for persons in (4, 8, 16, 64)]


def costs(profile):
    """Instructions of one call of runCycle and of runFloor, each with all that it calls."""
    names, calls, instructions = {}, collections.Counter(), collections.Counter()
    callee = None
    for line in profile:
        called = re.match(r"cfn=\((\d+)\)(?: (.*))?$", line)
        name = called or re.match(r"fn=\((\d+)\)(?: (.*))?$", line)
        if name and name.group(2):
            names[name.group(1)] = name.group(2)
        if called:
            work = re.search(r"\brun(Cycle|Floor)<", names[called.group(1)])
            callee = work and work.group(1)
        elif line.startswith("calls="):
            calls[callee] += int(line[6:].split()[0])
            instructions[callee] += int(next(profile).split()[1])
    return tuple(instructions[work] / calls[work] for work in ("Cycle", "Floor"))


def measure(row):
    with tempfile.NamedTemporaryFile("r", suffix=".callgrind", encoding="utf-8") as file:
        subprocess.run(["valgrind", "-q", "--tool=callgrind", f"--callgrind-out-file={file.name}", PROGRAM,
                        f"--benchmark_filter=^{row}/manual_time$", "--benchmark_min_time=0.1"],
                       check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        return costs(iter(file))


def main(rows):
    if any(row.startswith("-") for row in rows):
        print(__doc__)
        return 0 if rows[0] in ("-h", "--help") else 2
    print(f"{'row':24} {'cycle':>8} {'floor':>8} {'ratio':>6}")
    for row in rows or ROWS:
        cycle, floor = measure(row)
        print(f"{row:24} {cycle / 1000:8.1f} {floor / 1000:8.1f} {cycle / floor:6.3f}", flush=True)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
