#!/usr/bin/python3
"""Measures what rooms cost on this machine, with real brokers and services, and prints it.

usage: figures.py room PROGRAMS          one room with 16 people: memory, processor and how long a scene takes
       figures.py fleet PROGRAMS ROOMS   many rooms with four people each on one broker

Shares are of one core. A scene's time is from the publishing of the vision result that asks for it to its arrival at the
publisher, both in this process. Its floors are messages, in turn as long as the result and as the scene, that go as many
ways through the network: the broker itself carries them on to this process over a bridge, or another process does that can
do nothing else (a second broker). The floor of the service's cost is a subscriber that drops what it gets.
"""

import json
import multiprocessing
import os
import statistics
import sys
import time

from room import Bus, Machine, free_port, server, until

RATE = 30
ROUNDS = 1000
SECONDS = 30
# What leaves as bare/N comes back as back/N.
BRIDGE = ("connection %s\naddress 127.0.0.1:PORT\nbridge_protocol_version mqttv50\nnotifications false\ncleansession true\n"
          "restart_timeout 1\ntopic # %s\n")
# What leaves as far/N comes back the same way through the other process: one connection fetches it, one returns it.
FAR = BRIDGE % ("fetch", "in 1 loop/ far/") + BRIDGE % ("return", "out 1 loop/ back/")


def result(frame, people):
    """One after the other in rows; they sit, and the detector errs by a pixel."""
    heads = []
    for person in range(people):
        left, top = 100 + 130 * (person % 8) + (frame + person) % 2, 150 + 200 * (person // 8)
        heads.append({"fynId": person, "associatedHeads": [
            {"id": person, "camId": 0, "fynCamId": 0, "isSpeaker": False, "yaw": 5.0, "pitch": 2,
             "bbox": {"left": left, "top": top, "right": left + 80, "bottom": top + 100}}]})
    return json.dumps({"timestamp": 1700000000000, "frameNumber": frame, "heads": heads})


def start_service(machine, room):
    return machine.start(room, os.path.join(machine.programs, "productionrulesd"), "--bus", machine.url(room), "--provider",
                         "none", "--properties", "memory", "--config", "/dev/null", "--log", "stderr")


def processor_seconds(process):
    """Of all its threads, to the nanosecond; the ticks of other counters are longer than what a service takes."""
    total = 0
    for thread in os.listdir(f"/proc/{process.pid}/task"):
        with open(f"/proc/{process.pid}/task/{thread}/schedstat", encoding="ascii") as stat:
            total += int(stat.read().split()[0])
    return total / 1e9


def memory_mb(process):
    """Resident, and of that the process's own with its part of what it shares."""
    with open(f"/proc/{process.pid}/smaps_rollup", encoding="ascii") as rollup:
        values = dict(line.split(":", 1) for line in rollup.read().splitlines()[1:])
    return tuple(int(values[key].split()[0]) / 1024 for key in ("Rss", "Pss"))


def costs(processes, seconds, meanwhile=time.sleep):
    """Of each process: per cent of a core while `meanwhile(seconds)` runs, resident and proportional MB after it."""
    before, begun = [processor_seconds(process) for process in processes], time.monotonic()
    meanwhile(seconds)
    passed = time.monotonic() - begun
    return [(100 * (processor_seconds(process) - then) / passed, *memory_mb(process)) for process, then in zip(processes, before)]


def cost(processes, seconds, meanwhile=time.sleep):
    """Mean of the processes."""
    return tuple(statistics.mean(figures) for figures in zip(*costs(processes, seconds, meanwhile)))


def say_cost(what, figures):
    print("%-28s %6.2f %% of a core, %5.1f MB resident, %5.1f MB proportional" % (what, *figures), flush=True)


def say_costs(names, figures):
    for name, each in zip(names, figures):
        say_cost(name, each)


def say_times(what, milliseconds):
    steps = statistics.quantiles(milliseconds, n=100)
    print("%-28s median %.2f ms, 99%% %.2f ms, of %d" % (what, steps[49], steps[98], len(milliseconds)), flush=True)


def play(port, rooms, people, seconds):
    """Feeds every room at the rate of a camera; a process of its own."""
    bus = Bus(port, "", ["nothing"])
    end, frame, begun = time.monotonic() + seconds, 0, time.monotonic()
    while time.monotonic() < end:
        text = result(frame, people)
        for number, room in enumerate(rooms):
            pause = begun + (frame + number / len(rooms)) / RATE - time.monotonic()
            if pause > 0.002:
                time.sleep(pause)
            bus.publish(f"{room}/ICDOut", text)
        frame += 1
        time.sleep(max(0.0, begun + frame / RATE - time.monotonic()))
    bus.close()


def feeding(machine, rooms, people):
    """For `cost`: feeds the rooms while it waits."""
    def feed(seconds):
        player = multiprocessing.Process(target=play, args=(machine.port, rooms, people, seconds))
        player.start()
        player.join()
    return feed


def answer_ms(bus, topic, text, back):
    """From the publishing to the arrival of a message on `back`, in milliseconds; after a pause, as between frames: who has
    slept is slower."""
    time.sleep(0.02)
    before, begun = len(bus.received), time.monotonic()
    bus.publish(topic, text)
    while True:
        arrived = next((message for message in bus.received[before:] if message[1] == back), None)
        if arrived:
            return 1000 * (arrived[0] - begun), arrived[2].decode()
        assert time.monotonic() < begun + 20, f"no answer to {topic}"
        time.sleep(0.0002)


def scene_ms(bus, room, text):
    bus.publish(f"{room}/ctl", "reset-layouts")
    return answer_ms(bus, f"{room}/ICDOut", text, f"{room}/PRBOut")


def start_other_process(machine):
    """A broker that sends back what it fetches from the machine's own."""
    machine.write_broker_settings("far.conf", free_port(), FAR)
    machine.start("far", server("mosquitto"), "-c", machine.path("far.conf"))


def are_up(bus):
    return len({topic for _, topic, text in bus.received if topic.endswith("/PRBStatus") and b'"up"' in text})


def one_room(programs):
    machine = Machine(programs, BRIDGE % ("echo", "out 1 bare/ back/"))
    try:
        service = start_service(machine, "room")
        subscriber = machine.start("subscriber", "mosquitto_sub", "-V", "5", "-q", "1", "-p", str(machine.port), "-t",
                                   "room/ICDOut", "-F", "%l")
        start_other_process(machine)
        bus = Bus(machine.port, "", ["room/PRBStatus", "room/PRBOut", "back/#"])
        until(lambda: are_up(bus) == 1, "the service")
        until(lambda: bus.publish("far/first", "") and "back/first" in [topic for _, topic, _ in bus.received], "the other process")
        both = [service, subscriber]
        say_costs(("at rest", "a subscriber at rest"), costs(both, SECONDS))
        say_costs(("16 people, 30 a second", "a subscriber"), costs(both, SECONDS, feeding(machine, ["room"], 16)))
        text, scenes, bare, far = result(0, 16), [], [], []
        for number in range(ROUNDS):
            taken, scene = scene_ms(bus, "room", text)
            scenes.append(taken)
            bare.append(answer_ms(bus, "bare/x", (text, scene)[number % 2], "back/x")[0])
            far.append(answer_ms(bus, "far/x", (text, scene)[number % 2], "back/x")[0])
        say_times("result to scene", scenes)
        say_times("the same way, bare", bare)
        say_times("by another process, bare", far)
        print(f"{len(text)} and {len(scene)} bytes", flush=True)
        bus.close()
    finally:
        machine.close()


def fleet(programs, count):
    """Room 0 is fed and measured by this process, the others by another."""
    rooms = [f"room-{number}" for number in range(count)]
    machine = Machine(programs)
    try:
        services = [start_service(machine, room) for room in rooms]
        bus = Bus(machine.port, "", ["+/PRBStatus", "room-0/PRBOut"])
        until(lambda: are_up(bus) == count, "the services", 120)
        say_cost(f"{count} rooms at rest, each", cost(services, SECONDS))
        times = []

        def measured(seconds):
            player = multiprocessing.Process(target=play, args=(machine.port, rooms[1:], 4, seconds))
            player.start()
            while player.is_alive():
                times.append(scene_ms(bus, "room-0", result(len(times), 4))[0])
            player.join()

        broker = [machine.started["broker"]]
        broker_before = processor_seconds(broker[0])
        figures = cost(services, SECONDS, measured)
        say_cost(f"{count} rooms fed, each", figures)
        broker_share = 100 * (processor_seconds(broker[0]) - broker_before) / SECONDS
        say_cost("the broker", (broker_share, *memory_mb(broker[0])))
        say_times("result to scene, one room", times)
        last = {topic: json.loads(text) for _, topic, text in bus.received if topic.endswith("/PRBStatus")}
        # What the first room gets, this process sends.
        rates = [status["resultsPerSecond"] for topic, status in last.items() if topic != "room-0/PRBStatus"]
        print("results a second and room: mean %.1f, least %d; dropped %d" % (
            statistics.mean(rates), min(rates), sum(status["droppedMessages"] for status in last.values())), flush=True)
        bus.close()
    finally:
        machine.close()


def main(arguments):
    if len(arguments) == 2 and arguments[0] == "room":
        one_room(arguments[1])
    elif len(arguments) == 3 and arguments[0] == "fleet" and arguments[2].isdigit() and int(arguments[2]) > 1:
        fleet(arguments[1], int(arguments[2]))
    else:
        print(__doc__, file=sys.stderr)
        return 2
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
