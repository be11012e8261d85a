#!/usr/bin/env python3
"""Checks that the folders include one another in one direction only and that no two files include each other.

usage: include_layers.py ROOT        check the sources beneath ROOT
       include_layers.py --self-test check that the check finds what it must
"""

import os
import re
import sys

# Folder -> the folders that its files may include, besides itself.
LAYERS = {"platform": set()}
for folder, below in (
    ("model", "platform"),
    ("config", "model"),
    ("geometry", "config"),
    ("layouts", "geometry"),
    ("modes", "layouts"),
    ("output", "config"),
):
    LAYERS[folder] = LAYERS[below] | {below}
LAYERS["service"] = LAYERS["modes"] | {"modes", "output"}

# Only the library's entry function and programs choose a backend; the rest sees the interfaces.
BACKENDS = ("platform/embedded/", "platform/linux/", "platform/virtual/")
MAY_NAME_A_BACKEND = ("platform/", "service/entry/")

# Programs and tests stand on top and may include everything.
TOP = {"tools", "viewer", "benchmarks", "tests"}

INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


def read_sources(root):
    """Path below root -> text, for every C++ file of a layered or top folder."""
    sources = {}
    for folder in sorted(set(LAYERS) | TOP):
        for path, folders, names in os.walk(os.path.join(root, folder)):
            folders[:] = [name for name in folders if name != "node_modules"]
            for name in names:
                if name.endswith((".h", ".inc", ".cpp")):
                    full = os.path.join(path, name)
                    with open(full, encoding="utf-8") as file:
                        sources[os.path.relpath(full, root).replace(os.sep, "/")] = file.read()
    return sources


def layer_faults(sources):
    for path, text in sorted(sources.items()):
        folder = path.split("/")[0]
        for included in INCLUDE.findall(text):
            if included not in sources:
                yield f"{path} includes {included}, which is not there from the root"
                continue
            if folder in TOP:
                continue
            other = included.split("/")[0]
            if other != folder and other not in LAYERS[folder]:
                yield f"{path} includes {included}: {folder} may not use {other}"
            elif included.startswith(BACKENDS) and not path.startswith(MAY_NAME_A_BACKEND):
                yield f"{path} includes {included}: only the entry function chooses a backend"


def circle_faults(sources):
    state = {}  # path -> "open" while its includes are followed, then "done"
    for start in sorted(sources):
        if start in state:
            continue
        state[start] = "open"
        trail = [(start, iter(INCLUDE.findall(sources[start])))]
        while trail:
            path, rest = trail[-1]
            included = next(rest, None)
            if included is None:
                state[path] = "done"
                trail.pop()
            elif included not in sources:
                continue
            elif state.get(included) == "open":
                names = [name for name, _ in trail]
                yield "a circle: " + " -> ".join(names[names.index(included):] + [included])
            elif included not in state:
                state[included] = "open"
                trail.append((included, iter(INCLUDE.findall(sources[included]))))


def faults(sources):
    return list(layer_faults(sources)) + list(circle_faults(sources))


def self_test():
    """Each sample with the beginning of every fault that it must show."""
    samples = (
        ("one way", {"model/A.h": '#include "platform/B.h"\n', "platform/B.h": "#include <string>\n"}, []),
        ("a library's header", {"model/A.h": "#include <nlohmann/json.hpp>\n"}, []),
        ("upwards", {"model/A.h": '#include "config/B.h"\n', "config/B.h": ""}, ["model/A.h includes config/B.h"]),
        ("beside", {"layouts/A.cpp": '  #  include "output/B.h"', "output/B.h": ""},
         ["layouts/A.cpp includes output/B.h"]),
        ("several layers down", {"service/A.h": '#include "model/B.h"\n', "model/B.h": ""}, []),
        ("a program", {"tools/prb/A.cpp": '#include "service/B.h"\n', "service/B.h": ""}, []),
        ("towards a program", {"service/B.h": '#include "tools/A.h"\n', "tools/A.h": ""},
         ["service/B.h includes tools/A.h"]),
        ("not from the root", {"model/A.h": '#include "B.h"\n', "model/B.h": ""}, ["model/A.h includes B.h, which"]),
        ("a backend", {"service/A.h": '#include "platform/linux/B.h"\n', "platform/linux/B.h": ""},
         ["service/A.h includes platform/linux/B.h"]),
        ("the entry chooses", {"service/entry/A.cpp": '#include "platform/linux/B.h"\n', "platform/linux/B.h": ""}, []),
        ("a circle", {"model/A.h": '#include "model/B.h"\n', "model/B.h": '#include "model/A.h"\n'},
         ["a circle: model/A.h -> model/B.h -> model/A.h"]),
        ("twice is no circle", {"model/A.h": '#include "model/B.h"\n#include "model/C.h"\n',
                                "model/B.h": '#include "model/C.h"\n', "model/C.h": ""}, []),
        ("a comment", {"model/A.h": '// #include "config/B.h"\n', "config/B.h": ""}, []),
    )
    failed = 0
    for name, sources, expected in samples:
        found = faults(sources)
        if len(found) != len(expected) or not all(f.startswith(e) for f, e in zip(found, expected)):
            print(f"{name}: expected {expected}, found {found}")
            failed += 1
    print(f"{len(samples) - failed} of {len(samples)} samples as expected")
    return 1 if failed else 0


def main(arguments):
    if arguments == ["--self-test"]:
        return self_test()
    if len(arguments) != 1 or arguments[0].startswith("-"):
        print(__doc__, file=sys.stderr)
        return 2
    sources = read_sources(arguments[0])
    if not sources:
        print(f"include_layers.py: no sources beneath {arguments[0]}", file=sys.stderr)
        return 2
    found = faults(sources)
    for fault in found:
        print(fault)
    print(f"{len(sources)} files, {len(found)} faults")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
