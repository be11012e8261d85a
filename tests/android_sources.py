#!/usr/bin/env python3
"""Checks that Android.bp names the sources, the warnings and the version script that CMake builds the library with.

usage: android_sources.py ROOT BUILD   BUILD holds CMake's compile_commands.json
"""

import glob
import json
import os
import re
import sys

# What the library for Android is made of; pr_tools and the like are not.
TARGETS = ("productionrules_android", *("pr_" + name for name in (
    "platform", "embedded", "android", "model", "config", "geometry", "layouts", "modes", "output", "service")))
# Where CMake may take the reader with simdjson, Soong takes the one without; only clang knows the last.
MAY_DIFFER = {"model/FastVisionReader.cpp", "model/FastVisionReaderAbsent.cpp", "-Wthread-safety"}
# Of a build type or of CMake itself.
OPTIONS = re.compile(r"-(?:W(?!error=)\S+|ffp-contract=\S+|fvisibility\S*)$")


def strings(text, key):
    found = re.search(rf"\b{key}: (\[[^]]*\]|\"[^\"]*\")", text)
    return re.findall(r"\"([^\"]*)\"", found.group(1)) if found else []


def soong(root):
    with open(os.path.join(root, "Android.bp"), encoding="utf-8") as file:
        text = file.read()
    sources = {path for pattern in strings(text, "srcs") for path in glob.glob(pattern, root_dir=root, recursive=True)}
    options = set(strings(text, "cflags") + strings(text, "cppflags")) - {"-fexceptions"}
    return sources - set(strings(text, "exclude_srcs")), options, strings(text, "version_script")


def cmake(root, build):
    with open(os.path.join(build, "compile_commands.json"), encoding="utf-8") as file:
        commands = json.load(file)
    sources, options = set(), set()
    for command in commands:
        if re.search(r"([\w-]+)\.dir/", command["command"]).group(1) in TARGETS:
            sources.add(os.path.relpath(command["file"], root))
            options |= {word for word in command["command"].split() if OPTIONS.match(word)}
    with open(os.path.join(root, "CMakeLists.txt"), encoding="utf-8") as file:
        return sources, options, re.findall(r"\$\{PROJECT_SOURCE_DIR\}/(\S+\.map)", file.read())


def main(arguments):
    if len(arguments) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    root = os.path.abspath(arguments[0])
    faults = []
    for what, in_soong, in_cmake in zip(("source", "option", "version script"), soong(root), cmake(root, arguments[1])):
        for name in sorted((set(in_soong) ^ set(in_cmake)) - MAY_DIFFER):
            faults.append(f"{what} {name} is only in {'Android.bp' if name in in_soong else 'CMakeLists.txt'}")
    print("\n".join(faults) or "Android.bp builds what CMake builds")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
