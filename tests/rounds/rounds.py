#!/usr/bin/python3
"""Goes through pages and help texts like somebody who is new to them, and types every command that they show.

usage: rounds.py PROGRAMS ROUND   newcomer, integrator, tuner or supporter; ends with status 1 at the first surprise
       rounds.py PROGRAMS --all   whether the rounds have every command that is shown

A surprise is another exit status than 0, a word on standard error that nobody expects, or that what must show does not.
"""

import contextlib
import os
import re
import select
import signal
import subprocess
import sys
import time

HERE = os.path.dirname(os.path.abspath(__file__))
SOURCE = os.path.dirname(os.path.dirname(HERE))
sys.path.insert(0, os.path.join(SOURCE, "tests/endurance"))

from commands import shown
from room import Machine, free_port
from said import LEFT_OUT, ROUNDS

SECONDS = 120


class Surprise(Exception):
    pass


class Desk(Machine):
    """A broker, and a folder with what a reader has at hand: checkout, programs on the path, a home."""

    def __init__(self, programs):
        super().__init__(os.path.abspath(programs), "socket_domain ipv4\n")
        self.several = free_port()
        for name in ("conf", "examples", "tools"):
            os.symlink(os.path.join(SOURCE, name), self.path(name))
        for name in (".local/share/bash-completion/completions", ".config/fish/completions"):
            os.makedirs(self.path(name))
        self.write("fyn.conf", "")
        base = f"127.0.0.1:{self.port}"
        # What stands for the reader's own machine, and for a minute of patience.
        self.own = (
            ("build/release/bin/", ""), ("/etc/fyn.conf", "fyn.conf"), ("dbus:system", "dbus:session"),
            ("/usr/share/doc/productionrules/mosquitto", "conf/mosquitto"), ("--port 8080", f"--port {free_port()}"),
            ("mqtt://localhost", "mqtt://" + base), ("127.0.0.1:1883", base), ("127.0.0.1 1883", base.replace(":", " ")),
            ("mqtt://127.0.0.1/", f"mqtt://127.0.0.1:{self.several}/"), ("-t ", f"-p {self.several} -t "),
            ("tools/multi-device", f"tools/multi-device --port {self.several} --programs {self.programs}"),
            ("--seconds 60", "--seconds 5"), ("parallel <", "bash -e <"), ("| less", "| cat"),
            ("[--config FILE]", "--config quick.conf"), ("[--config zero.conf]", "--config zero.conf"), (" ...", ""),
            ("KEY1", "persist.fdtimers.groupframe.outside"), ("KEY2", "persist.fdtimers.groupframe.onedge"),
            ("KEY", "persist.fdtimers.groupframe.outside"),
        )
        kept = {name: value for name, value in os.environ.items() if not name.startswith(("PRB_", "FYN_"))}
        self.environment = {**kept, "HOME": self.folder, "PATH": self.programs + ":/usr/sbin:" + os.environ["PATH"],
                            "PRB_PROPERTIES": self.path("properties.db"), "FYN_CONF_NAME": self.path("fyn.conf"),
                            "PYTHONUNBUFFERED": "1",
                            "DBUS_SESSION_BUS_ADDRESS": f"unix:path={self.path('dbus')}"}

    def typed(self, command):
        for shown_text, own in self.own:
            command = command.replace(shown_text, own)
        return command

    def begin(self, command):
        return subprocess.Popen(["bash", "-o", "pipefail", "-c", command], cwd=self.folder, env=self.environment, text=False,
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                start_new_session=True)


def interrupt(process):
    """As Ctrl-C does, for all of the command."""
    with contextlib.suppress(ProcessLookupError):
        os.killpg(process.pid, signal.SIGINT)


def end_all(process):
    """What a shell started behind "&" does not hear Ctrl-C."""
    interrupt(process)
    try:
        process.communicate(timeout=5)
    except subprocess.TimeoutExpired:
        with contextlib.suppress(ProcessLookupError):
            os.killpg(process.pid, signal.SIGKILL)
        process.communicate()


class Talk:
    """What a command says, read while it runs."""

    def __init__(self, process):
        self.process, self.texts = process, {process.stdout: b"", process.stderr: b""}
        self.open = list(self.texts)

    def read(self, seconds):
        for stream in select.select(self.open, [], [], seconds)[0]:
            more = os.read(stream.fileno(), 1 << 16)
            self.texts[stream] += more
            if not more:
                self.open.remove(stream)

    def output(self):
        return self.texts[self.process.stdout].decode()

    def errors(self):
        return self.texts[self.process.stderr].decode()


def made(desk, step):
    if step.file is None or not os.path.exists(desk.path(step.file)):
        return ""
    if os.path.isdir(desk.path(step.file)):
        return "\n".join(sorted(os.listdir(desk.path(step.file))))
    with open(desk.path(step.file), encoding="utf-8") as file:
        return file.read()


def take(desk, step, going):
    """Types the command; one that goes on is added to `going`."""
    if step.file and os.path.isfile(desk.path(step.file)):
        # Another command has made one of this name.
        os.unlink(desk.path(step.file))
    process = desk.begin(desk.typed(step.command))
    talk, end, interrupted = Talk(process), time.monotonic() + SECONDS, False
    while talk.open:
        talk.read(0.2)
        seen = re.search(step.shows, talk.output() + talk.errors() + made(desk, step))
        if seen and step.goes_on:
            going.append(process)
            return
        if seen and step.until_interrupted and not interrupted:
            interrupted = True
            interrupt(process)
        if time.monotonic() > end:
            os.killpg(process.pid, signal.SIGKILL)
            raise Surprise(f"not at its end after {SECONDS} s\n{talk.output()}{talk.errors()}")
    status, errors = process.wait(), talk.errors()
    # A shell that waits for a pipe ends by Ctrl-C itself.
    if status != 0 and not (status in (-signal.SIGINT, 130) and interrupted and "|" in step.command):
        raise Surprise(f"status {status}\n{talk.output()[-2000:]}{errors}")
    odd = [line for line in errors.splitlines() if not re.search(step.says or "^$", line)]
    if odd:
        raise Surprise("says on standard error: " + "\n".join(odd))
    if not re.search(step.shows, talk.output() + made(desk, step)) and not step.until_interrupted:
        raise Surprise(f"does not show /{step.shows}/ but\n{talk.output()[-2000:]}")


def go(programs, name):
    desk, going = Desk(programs), []
    try:
        for step in ROUNDS[name]:
            began = time.monotonic()
            try:
                take(desk, step, going)
            except Surprise as surprise:
                print(f"{name}: {step.command}\n  typed as: {desk.typed(step.command)}\n{surprise}", file=sys.stderr)
                return 1
            print(f"{time.monotonic() - began:5.1f} s  {step.command.splitlines()[0]}", flush=True)
        return 0
    finally:
        for process in reversed(going):
            end_all(process)
        desk.close()


def find_missing(programs):
    """Commands that are shown and that no round has; and reasons for commands that nobody shows any more."""
    taken = {step.command for steps in ROUNDS.values() for step in steps}
    everything = shown(SOURCE, os.path.join(programs, "prb"))
    faults = [f"{where}: in no round: {command}" for where, command in everything
              if command not in taken and not any(command.startswith(begin) for begin in LEFT_OUT)]
    faults += [f"left out, but shown nowhere: {begin}" for begin in LEFT_OUT
               if not any(command.startswith(begin) for _, command in everything)]
    faults += [f"in a round, but shown nowhere: {step.command}" for steps in ROUNDS.values() for step in steps
               if not step.own and step.command not in {command for _, command in everything}]
    print("\n".join(faults) or f"all of {len(everything)} commands", file=sys.stderr if faults else sys.stdout)
    return 1 if faults else 0


def main():
    programs, name = sys.argv[1:]
    return find_missing(programs) if name == "--all" else go(programs, name)


if __name__ == "__main__":
    sys.exit(main())
