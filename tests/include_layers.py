#!/usr/bin/env python3
"""Checks that the rooms (folders) include one another in one direction only, that no file pairs form a circle and
that no two files define a type of the same name.

usage: include_layers.py ROOT        check the sources beneath ROOT
       include_layers.py --self-test check that the check finds what it must
"""

import os
import re
import sys

# Room -> the rooms whose files it may include, besides its own; from the bottom up, so that none points upwards. What
# a room may include is spelt out where it is all of a few rooms, and taken over with `above` where it is a stack.
ROOMS = {"platform": set()}


def above(*rooms):
    """What the given rooms may include, and they themselves."""
    return set(rooms).union(*(ROOMS[room] for room in rooms))


ROOMS["platform/embedded"] = {"platform"}
ROOMS["platform/virtual"] = {"platform"}
ROOMS["platform/android"] = {"platform", "platform/embedded"}
ROOMS["platform/linux"] = {"platform", "platform/embedded"}
LINUX_BACKENDS = {"platform/linux/mqtt", "platform/linux/dbus", "platform/linux/sqlite", "platform/linux/journal",
                  "platform/linux/prometheus"}
for backend in LINUX_BACKENDS:
    ROOMS[backend] = {"platform", "platform/linux"}
ROOMS["model"] = above("platform")
ROOMS["config"] = above("model")
ROOMS["config/check"] = above("config")
ROOMS["geometry"] = above("config")
ROOMS["layouts/cycle"] = above("geometry")
ROOMS["layouts/group"] = above("layouts/cycle")
ROOMS["layouts/people"] = above("layouts/cycle")
ROOMS["layouts/speaker"] = above("layouts/people")
ROOMS["layouts/streams"] = above("layouts/people", "layouts/group")
ROOMS["modes"] = above("layouts/streams", "layouts/speaker")
ROOMS["output"] = above("config")
ROOMS["service"] = above("modes", "output")
# Only programs name a backend; the library's entry function takes that of the device, the rest sees the interfaces.
ROOMS["service/entry"] = above("service", "config/check")
ROOMS["daemon"] = {"platform", "platform/linux", "config/check"}
ROOMS["examples"] = {"platform", "platform/linux/dbus"}
ROOMS["tools/base"] = above("config")
ROOMS["tools/recording"] = above("tools/base", "service")
ROOMS["tools/replay"] = above("tools/recording") | {"platform/embedded", "platform/virtual"}
ROOMS["tools/settings"] = above("tools/recording", "config/check")
ROOMS["tools/live"] = above("tools/recording") | {"platform/linux"}
ROOMS["tools/meeting"] = above("tools/settings")
ROOMS["tools/page"] = above("platform")
ROOMS["tools/report"] = above("tools/replay", "tools/page")
ROOMS["tools/view"] = above("tools/replay", "tools/page")
ROOMS["tools/tune"] = above("tools/report", "tools/settings")
ROOMS["tools/why"] = above("tools/tune")
ROOMS["tools/demo"] = above("tools/view", "tools/meeting")
ROOMS["tools/feed"] = above("tools/report")
ROOMS["tools/video/source"] = above("tools/base")
ROOMS["tools/video/compose"] = above("tools/base")
ROOMS["tools/video/camera"] = above("tools/video/source", "tools/video/compose", "tools/live", "platform/linux/dbus")
ROOMS["tools/video/vision"] = above("tools/video/source", "tools/live", "tools/meeting")
ROOMS["tools/prb"] = above("tools/why", "tools/demo", "tools/feed", "tools/live")
ROOMS["benchmarks"] = set(ROOMS)
ROOMS["fuzz"] = set(ROOMS)
ROOMS["tests"] = set(ROOMS)

# Where the formatter leaves no other form: a namespace begins or ends, a type outside all others is defined.
NAMES = re.compile(r"^(?:(?:inline )?namespace ?(?P<opened>[\w:]*) ?\{|(?P<closed>\})  // namespace|"
                   r"(?:struct|class|enum class|enum|union) (?P<type>\w+)(?: final)?(?: : [^;{]*)?\s*\{)", re.MULTILINE)
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


def room_of(path):
    """The innermost room that the file lies in; "" for none."""
    folder = os.path.dirname(path)
    while folder and folder not in ROOMS:
        folder = os.path.dirname(folder)
    return folder


# A project of its own, built against what is installed.
APART = "examples/port"


def read_sources(root):
    """Path below root -> text, for every C++ file but what a build has made and what is no part of this project."""
    sources = {}
    for path, folders, names in os.walk(root):
        folders[:] = [name for name in folders if name not in ("node_modules", "build") and name[0] != "."]
        if os.path.relpath(path, root).replace(os.sep, "/") == APART:
            continue
        for name in names:
            if name.endswith((".h", ".inc", ".cpp")):
                full = os.path.join(path, name)
                with open(full, encoding="utf-8") as file:
                    sources[os.path.relpath(full, root).replace(os.sep, "/")] = file.read()
    return sources


def layer_faults(sources):
    for path, text in sorted(sources.items()):
        room = room_of(path)
        if not room:
            yield f"{path} lies in no room of the table"
            continue
        for included in INCLUDE.findall(text):
            if included not in sources:
                yield f"{path} includes {included}, which is not there from the root"
                continue
            other = room_of(included)
            if other != room and other not in ROOMS[room]:
                yield f"{path} includes {included}: {room} may not use {other}"


def pairs_of(sources):
    """File pair, such as model/Rect for its header and its source -> the pairs that it includes."""
    pairs = {}
    for path, text in sources.items():
        pair = os.path.splitext(path)[0]
        included = {os.path.splitext(name)[0] for name in INCLUDE.findall(text) if name in sources}
        pairs.setdefault(pair, set()).update(included - {pair})
    return pairs


def circle_faults(sources):
    pairs = pairs_of(sources)
    state = {}  # pair -> "open" while its includes are followed, then "done"
    for start in sorted(pairs):
        if start in state:
            continue
        state[start] = "open"
        trail = [(start, iter(sorted(pairs[start])))]
        while trail:
            pair, rest = trail[-1]
            included = next(rest, None)
            if included is None:
                state[pair] = "done"
                trail.pop()
            elif state.get(included) == "open":
                names = [name for name, _ in trail]
                yield "a circle: " + " -> ".join(names[names.index(included):] + [included])
            elif included not in state:
                state[included] = "open"
                trail.append((included, iter(sorted(pairs[included]))))


def types_of(text):
    """The full names of the types that other files could name, too: of each only one can be in a program."""
    namespaces = []
    for found in NAMES.finditer(text):
        if found["type"]:
            if "" not in namespaces:
                yield "::".join(namespaces + [found["type"]])
        elif found["closed"]:
            namespaces.pop()
        else:
            namespaces.append(found["opened"])


def name_faults(sources):
    places = {}
    for path, text in sorted(sources.items()):
        for name in types_of(text):
            places.setdefault(name, []).append(path)
    for name, paths in sorted(places.items()):
        if len(paths) > 1:
            yield f"{name} is defined in {' and '.join(paths)}"


def faults(sources):
    return list(layer_faults(sources)) + list(circle_faults(sources)) + list(name_faults(sources))


def self_test():
    """Each sample with the beginning of every fault that it must show."""
    samples = (
        ("one way", {"model/A.h": '#include "platform/B.h"\n', "platform/B.h": "#include <string>\n"}, []),
        ("a library's header", {"model/A.h": "#include <nlohmann/json.hpp>\n"}, []),
        ("several layers down, oddly spaced", {"service/A.h": '  #  include "model/B.h"', "model/B.h": ""}, []),
        ("a comment", {"model/A.h": '// #include "config/B.h"\n', "config/B.h": ""}, []),
        ("a folder below a room", {"layouts/cycle/parts/A.h": '#include "modes/B.h"\n', "modes/B.h": ""},
         ["layouts/cycle/parts/A.h includes modes/B.h: layouts/cycle may not use modes"]),
        ("no room", {"attic/A.h": ""}, ["attic/A.h lies in no room"]),
        ("beside the rooms of a folder", {"tools/A.h": ""}, ["tools/A.h lies in no room"]),
        ("not from the root", {"model/A.h": '#include "B.h"\n', "model/B.h": ""}, ["model/A.h includes B.h, which"]),
        ("a circle", {"model/A.h": '#include "model/B.h"\n', "model/B.h": '#include "model/A.h"\n'},
         ["a circle: model/A -> model/B -> model/A"]),
        ("a circle through sources", {"model/A.h": "", "model/A.cpp": '#include "model/A.h"\n#include "model/B.h"\n',
                                      "model/B.h": '#include "model/A.h"\n'},
         ["a circle: model/A -> model/B -> model/A"]),
        ("one name twice", {"model/A.h": "namespace a {\nnamespace b {\nstruct S {\n};\n}  // namespace b\n}  // namespace a\n",
                            "model/B.cpp": "namespace a::b {\nclass S final : public T {\n};\n}  // namespace a::b\n"},
         ["a::b::S is defined in model/A.h and model/B.cpp"]),
        ("names apart", {"model/A.h": "namespace a {\nstruct S;\nstruct T {\n  struct S {};\n};\n}  // namespace a\n",
                         "model/A.cpp": "namespace a {\nstruct T::S {};\nnamespace {\nstruct S {};\n}  // namespace\n}\n",
                         "model/B.h": "namespace b {\nstruct S {\n};\n}  // namespace b\nstruct S {\n};\n"}, []),
        ("twice is no circle", {"model/A.h": '#include "model/B.h"\n#include "model/C.h"\n',
                                "model/B.h": '#include "model/C.h"\n', "model/C.h": ""}, []),
    )
    # Every rule broken once, by a header and by a source.
    samples += tuple(
        (f"{room} -> {other}", {f"{room}/A{ending}": f'#include "{other}/B.h"\n', f"{other}/B.h": ""},
         [f"{room}/A{ending} includes {other}/B.h: {room} may not use {other}"])
        for room in ROOMS for other in ROOMS if other != room and other not in ROOMS[room]
        for ending in (".h", ".cpp"))
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
