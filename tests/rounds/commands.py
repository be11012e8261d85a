"""The commands that a reader of this project is shown: in code blocks of the pages, and as examples of the programs' --help."""

import glob
import os
import re
import subprocess

PAGES = ("README.md", "CONTRIBUTING.md", "api/README.md", "viewer/README.md", "docs/*.md")


def blocks(page):
    """Code that a reader would type: blocks marked sh, and lines that are indented as code."""
    language = None
    for line in page.splitlines():
        fence = re.match(r"```(\w*)", line)
        if fence:
            language = None if language is not None else fence.group(1)
        elif language == "sh" or (language is None and re.match(r" {4,}[^ {]", line)):
            yield line.strip()


def whole(lines):
    """Lines joined that a shell would read as one command."""
    command = ""
    for line in lines:
        command += line
        if command.endswith("\\"):
            command = command[:-1]
        elif command.startswith("for ") and len(re.findall(r"\bdo\b", command)) > len(re.findall(r"\bdone\b", command)):
            command += "\n"
        else:
            yield command
            command = ""


def without_remark(command):
    return re.sub(r"\s{2,}[#(].*$", "", command).strip()


def of_pages(source):
    for pattern in PAGES:
        for path in sorted(glob.glob(os.path.join(source, pattern))):
            with open(path, encoding="utf-8") as page:
                for command in whole(blocks(page.read())):
                    yield os.path.relpath(path, source), without_remark(command)


def of_help(program):
    def said(*arguments):
        return subprocess.run([program, *arguments], capture_output=True, text=True, check=True).stdout

    for command in re.findall(r"^  ([a-z-]+) ", said("help").split("Subcommands:")[1].split("Examples:")[0], re.MULTILINE):
        for example in re.findall(r"^  (\S.*)$", said("help", command).split("Examples:")[1], re.MULTILINE):
            yield "prb help " + command, re.sub(r"\s{2,}.*$", "", example)


def shown(source, program):
    return list(of_pages(source)) + list(of_help(program))
