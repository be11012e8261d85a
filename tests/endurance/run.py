#!/usr/bin/python3
"""Disturbs a room of real processes, or lets it run for long, and sees whether the service stays whole.

usage: run.py chaos PROGRAMS [CASE...]   every case, or those named
       run.py soak PROGRAMS HOURS        simulated days, played 30 times as fast

PROGRAMS is the folder of productionrulesd, prb and printing-camera-provider. Every case ends with what was sent,
delivered and lost, and the service's memory, descriptors and threads before and after it. Status 1 when the service
does not answer afterwards, ends, or has grown.
"""

import os
import random
import re
import resource
import signal
import sqlite3
import statistics
import sys
import time

from room import Room, until

TIMES = 100
MOST_GROWTH_KB = 20000


class Load:
    """A meeting that is played in a loop; counts what the broker took of it."""

    def __init__(self, room, speed, minutes=10):
        self.room = room
        meeting = room.path("meeting.jsonl")
        if not os.path.exists(meeting):
            made = room.prb("simulate", "--seed", "1", "--minutes", str(minutes), "--no-truth", "-o", meeting)
            assert made.returncode == 0, made.stderr
        room.write("load.log", "")
        room.start("load", os.path.join(room.programs, "prb"), "play", meeting, "--bus", room.url(room.ROOM), "--loop", "--speed",
                   str(speed))

    def end(self):
        """Sent, and of these lost."""
        self.room.end("load", signal.SIGINT)
        said = self.room.log("load")
        sent = re.search(r"(\d+) messages played", said)
        lost = re.search(r"(\d+) of them were never taken", said)
        return int(sent.group(1)) if sent else 0, int(lost.group(1)) if lost else 0


def broker_is_killed(room):
    for _ in range(TIMES):
        time.sleep(random.uniform(0.05, 0.3))
        room.end("broker")
        time.sleep(random.uniform(0, 0.3))
        room.start_broker()


def provider_is_away(room):
    for _ in range(TIMES):
        room.end("provider")
        time.sleep(random.uniform(0, 5))
        shown = len(room.shown())
        room.start_provider()
        until(lambda before=shown: len(room.shown()) > before, "the provider that came back gets no picture")


def dbus_is_restarted(room):
    for _ in range(TIMES // 5):
        room.end("provider")
        room.end("dbus")
        time.sleep(random.uniform(0, 1))
        room.start_dbus()
        shown = len(room.shown())
        room.start_provider()
        until(lambda before=shown: len(room.shown()) > before, "the provider on a new D-Bus gets no picture")


def store_is_broken(room):
    """Full, locked, corrupt, deleted: each while the service reloads."""
    limited = room.prb("prop", "set", "vendor.fyndebug.timer", "7", "--properties", room.store,
                       preexec_fn=lambda: (signal.signal(signal.SIGXFSZ, signal.SIG_IGN),
                                           resource.setrlimit(resource.RLIMIT_FSIZE, (0, 0))))
    assert limited.returncode != 0, "a full disk went unnoticed"
    room.answer_seconds()
    lock = sqlite3.connect(room.store, isolation_level=None)
    lock.execute("BEGIN EXCLUSIVE")
    reload(room)
    room.answer_seconds()
    lock.execute("ROLLBACK")
    lock.close()
    for name in ("", "-wal"):
        with open(room.store + name, "wb") as file:
            file.write(os.urandom(5000))
    reload(room)
    room.answer_seconds()
    for name in ("", "-wal", "-shm"):
        if os.path.exists(room.store + name):
            os.unlink(room.store + name)
    reload(room)


def reload(room):
    asked = room.prb("ctl", "config-change", "--bus", room.url(room.ROOM), "--properties", "memory")
    assert asked.returncode == 0, asked.stderr


def service_is_terminated(room):
    for _ in range(TIMES // 2):
        time.sleep(random.uniform(0, 0.7))
        begun = time.monotonic()
        status = room.end("service", signal.SIGTERM)
        # In its first moments a process does not hold the signal back yet.
        assert status in (0, -signal.SIGTERM), f"the service ended with {status}:\n{room.log('service')[-2000:]}"
        assert time.monotonic() - begun < 10, "the service took too long to end"
        room.start_service()


def messages_flood(_room):
    time.sleep(10)


def documents_are_huge(room):
    """2 MB are taken, one at a time; more than 4 MiB are dropped, more than 8 MiB never leave the broker."""
    bus = room.bus("/PRBOut")
    for size in [2000000] * 30 + [6000000, 200000000]:
        bus.publish("/ICDOut", '{"heads":[],"padding":"%s"}' % ("x" * size)).wait_for_publish(60)
    bus.close()


CASES = {
    "broker": (broker_is_killed, 1),
    "provider": (provider_is_away, 1),
    "dbus": (dbus_is_restarted, 1),
    "store": (store_is_broken, 1),
    "terminations": (service_is_terminated, 10),
    "flood": (messages_flood, 333),
    "documents": (documents_are_huge, 1),
}

PROVIDER_IS_AWAY = ("provider", "dbus")


def settled_use(room):
    """When what was queued is done; the smallest of some looks, because tasks come and go."""
    room.answer_seconds()
    looks = []
    for _ in range(10):
        time.sleep(0.1)
        looks.append(room.use())
    return tuple(min(values) for values in zip(*looks))


def chaos(programs, names):
    failed = []
    for name in names or CASES:
        disturb, speed = CASES[name]
        room = Room(programs)
        try:
            load = Load(room, 1)
            time.sleep(3)
            load.end()
            before = settled_use(room)
            load = Load(room, speed)
            made, shown = room.log("service").count("sending Layout"), len(room.shown())
            disturb(room)
            sent, lost = load.end()
            room.expect_same_picture()
            made, shown = room.log("service").count("sending Layout") - made, len(room.shown()) - shown
            peak = room.peak_kb()
            after = settled_use(room)
            print(f"{name:13} results sent {sent}, lost {lost}; pictures made {made}, shown {shown}; "
                  f"kB, descriptors, threads before {before}, after {after}, at most {peak} kB", flush=True)
            assert shown >= made or name in PROVIDER_IS_AWAY, "the provider was there and missed a picture"
            assert after[0] - before[0] < MOST_GROWTH_KB, "the memory has grown"
            assert after[1] <= before[1] and after[2] <= before[2], "descriptors or threads have grown"
        except AssertionError as fault:
            print(f"{name:13} FAILED: {fault}", flush=True)
            failed.append(name)
        finally:
            room.close()
    return 1 if failed else 0


def soak(programs, hours):
    """What the service uses and how fast it answers is to be the same in the first and in the last quarter."""
    room = Room(programs)
    looks = []
    try:
        load = Load(room, 30, 60)
        end = time.monotonic() + hours * 3600
        while time.monotonic() < end:
            time.sleep(min(30.0, max(1.0, hours * 36)))
            looks.append((*room.use(), 1000 * room.answer_seconds()))
            print("%d kB, %d descriptors, %d threads, answer after %.0f ms" % looks[-1], flush=True)
        sent, lost = load.end()
    finally:
        room.close()
    quarter = max(1, len(looks) // 4)
    first, last = ([statistics.median(column) for column in zip(*part)] for part in (looks[:quarter], looks[-quarter:]))
    print(f"sent {sent}, lost {lost}; kB, descriptors, threads, ms: first quarter {first}, last quarter {last}")
    grown = last[0] - first[0] >= MOST_GROWTH_KB or last[1] > first[1] or last[2] > first[2] or last[3] > 2 * first[3] + 100
    return 1 if grown else 0


def main(arguments):
    if len(arguments) >= 2 and arguments[0] == "chaos" and set(arguments[2:]) <= set(CASES):
        return chaos(arguments[1], arguments[2:])
    if len(arguments) == 3 and arguments[0] == "soak" and re.fullmatch(r"\d+(\.\d+)?", arguments[2]):
        return soak(arguments[1], float(arguments[2]))
    print(__doc__, file=sys.stderr)
    return 2


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
