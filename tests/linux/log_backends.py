"""Runs productionrulesd with the log backends that need a machine around them, and reads what they write.

usage: log_backends.py android|journal PRODUCTIONRULESD [LIBRARY]

With LIBRARY, productionrulesd loads that one instead of its own: the library of another device.

The journal is a socket of this test in a mount namespace of its own; where the machine grants none, the test ends
with status 77 (skipped).
"""

import os
import re
import signal
import socket
import subprocess
import sys

FIRST_LINE = "ProductionRuleIPCService::ctor()"
TAG = "ProductionRulesIPCService"
JOURNAL = "/run/systemd/journal"
SKIPPED = 77
LIMIT_SECONDS = 60


def start(command, kind):
    return subprocess.Popen(
        command + ["--log", kind, "--bus", "embedded", "--properties", "memory", "--config", "/nonexistent.conf"],
        stdout=subprocess.DEVNULL,
        stderr=subprocess.PIPE,
        text=True,
    )


def end(process):
    process.send_signal(signal.SIGTERM)
    _, rest = process.communicate(timeout=LIMIT_SECONDS)
    assert process.returncode == 0, f"ended with {process.returncode}: {rest}"


def check_android(command):
    process = start(command, "android")
    line = process.stderr.readline()
    while line and FIRST_LINE not in line:
        line = process.stderr.readline()
    end(process)
    # Tag, level, date, time, process, thread, text: the host form of the Android log library.
    assert re.match(rf"{TAG} I \d\d-\d\d [\d:]+ +\d+ +\d+ {re.escape(FIRST_LINE)}$", line), repr(line)


def fields_of(datagram):
    """The NAME=value lines of a record of the journal's native protocol."""
    return dict(line.split("=", 1) for line in datagram.decode().splitlines() if "=" in line)


def check_journal(command):
    os.makedirs(JOURNAL)
    with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as journal:
        journal.bind(JOURNAL + "/socket")
        journal.settimeout(LIMIT_SECONDS)
        process = start(command, "journal")
        levels = {}
        # The second one stands for the provider that is not there.
        while "3" not in levels:
            record = fields_of(journal.recv(1 << 16))
            if record.get("PRB_TAG") == TAG:
                levels.setdefault(record["PRIORITY"], record)
        end(process)
    assert levels["6"]["MESSAGE"] == f"{TAG}: {FIRST_LINE}", levels
    assert "CODE_FILE" not in levels["6"], levels


def in_own_namespace(arguments):
    enter = ["unshare", "--map-root-user", "--mount"]
    script = 'mount -t tmpfs tmpfs /run && exec "$@"'
    probe = subprocess.run(enter + ["sh", "-c", script, "sh", "true"], check=False, capture_output=True)
    if probe.returncode != 0:
        print("skipped: no mount namespace on this machine")
        return SKIPPED
    inner = ["sh", "-c", script, "sh", sys.executable, __file__, "--inside"] + arguments[1:]
    return subprocess.run(enter + inner, check=False).returncode


def main(arguments):
    if arguments[0] == "journal":
        return in_own_namespace(arguments)
    kind, program, *library = arguments
    command = [program] + [part for path in library for part in ("--library", path)]
    if kind == "--inside":
        check_journal(command)
    else:
        check_android(command)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
