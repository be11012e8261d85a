"""A whole room of real processes on this machine: broker, D-Bus, camera provider and service, and a bus client."""

import os
import shutil
import signal
import socket
import subprocess
import tempfile
import threading
import time

import paho.mqtt.client as mqtt


def free_port():
    with socket.socket() as listener:
        listener.bind(("127.0.0.1", 0))
        return listener.getsockname()[1]


def until(condition, what, seconds=20):
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            raise AssertionError(f"{what}: not within {seconds} s")
        time.sleep(0.01)


def server(name):
    return shutil.which(name) or os.path.join("/usr/sbin", name)


class Bus:
    """A client on the bus of a room; it comes back by itself when the broker does."""

    def __init__(self, port, room, topics):
        self.prefix = room
        self.received = []
        self.subscribed = threading.Event()
        self.client = mqtt.Client(protocol=mqtt.MQTTv5)
        self.client.reconnect_delay_set(1, 1)
        self.client.max_queued_messages_set(0)
        # Or a message waits until the one before it is acknowledged, up to 40 ms.
        self.client.on_socket_open = lambda _client, _data, opened: opened.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self.client.on_connect = lambda *_: self.client.subscribe([(room + topic, 1) for topic in topics])
        self.client.on_subscribe = lambda *_: self.subscribed.set()
        self.client.on_message = lambda _client, _data, message: self.received.append(
            (time.monotonic(), message.topic[len(room):], message.payload))
        self.client.connect("127.0.0.1", port)
        self.client.loop_start()
        assert self.subscribed.wait(10), "the broker does not answer"

    def publish(self, topic, text):
        return self.client.publish(self.prefix + topic, text)

    def close(self):
        self.client.disconnect()
        self.client.loop_stop()


class Machine:
    """A broker, and programs started in a folder of its own, which are ended by process id."""

    def __init__(self, programs, broker_settings=""):
        self.programs = programs
        self.folder = tempfile.mkdtemp(prefix="prb-endurance-")
        self.port = free_port()
        self.started = {}
        self.write_broker_settings("mosquitto.conf", self.port, broker_settings)
        self.start_broker()

    def path(self, name):
        return os.path.join(self.folder, name)

    def write(self, name, text):
        with open(self.path(name), "w", encoding="utf-8") as file:
            file.write(text)

    def write_broker_settings(self, name, port, more):
        self.write(name, f"listener {port} 127.0.0.1\nallow_anonymous true\npersistence false\n"
                   + ("user root\n" if os.geteuid() == 0 else "") + more.replace("PORT", str(self.port)))

    def url(self, room):
        return f"mqtt://127.0.0.1:{self.port}/{room}"

    def start(self, name, *command):
        with open(self.path(name + ".log"), "ab") as log:
            self.started[name] = subprocess.Popen(command, stdout=log, stderr=log, stdin=subprocess.DEVNULL)
        return self.started[name]

    def end(self, name, number=signal.SIGKILL):
        process = self.started.pop(name, None)
        if process is None:
            return None
        process.send_signal(number)
        return process.wait(20)

    def log(self, name):
        with open(self.path(name + ".log"), encoding="utf-8", errors="replace") as file:
            return file.read()

    def start_broker(self):
        self.start("broker", server("mosquitto"), "-c", self.path("mosquitto.conf"))
        until(self.is_broker_there, "the broker")

    def is_broker_there(self):
        try:
            socket.create_connection(("127.0.0.1", self.port), 1).close()
            return True
        except OSError:
            return False

    def close(self):
        for name in list(self.started):
            self.end(name)
        shutil.rmtree(self.folder, ignore_errors=True)


class Room(Machine):
    """A room with everything that belongs to it."""

    ROOM = "room"

    def __init__(self, programs):
        super().__init__(programs)
        self.dbus = f"unix:path={self.folder}/dbus"
        self.store = self.path("properties.db")
        self.write("dbus.conf", f"<busconfig><type>session</type><listen>{self.dbus}</listen><policy context='default'>"
                   "<allow send_destination='*' eavesdrop='true'/><allow eavesdrop='true'/><allow own='*'/></policy>"
                   "</busconfig>")
        self.write("fyn.conf", "")
        self.frame = 0
        self.start_dbus()
        self.start_provider()
        self.start_service()

    def bus(self, *topics):
        return Bus(self.port, self.ROOM, topics)

    def start_dbus(self):
        if os.path.exists(self.path("dbus")):
            os.unlink(self.path("dbus"))
        self.start("dbus", server("dbus-daemon"), "--nofork", "--nopidfile", "--config-file=" + self.path("dbus.conf"))
        until(lambda: os.path.exists(self.path("dbus")), "the D-Bus")

    def start_provider(self):
        self.start("provider", os.path.join(self.programs, "printing-camera-provider"), "--bus", self.dbus)

    def start_service(self):
        return self.start("service", os.path.join(self.programs, "productionrulesd"), "--bus", self.url(self.ROOM), "--provider",
                          "dbus:" + self.dbus, "--properties", self.store, "--config", self.path("fyn.conf"), "--log", "stderr")

    def prb(self, *arguments, **options):
        return subprocess.run([os.path.join(self.programs, "prb"), *arguments], capture_output=True, text=True, check=False,
                              stdin=subprocess.DEVNULL, **options)

    def answer_seconds(self, seconds=20):
        """How long the service takes from a person who is new to the picture that shows the room."""
        bus = self.bus("/PRBOut")
        # The last picture may come with the subscription.
        time.sleep(0.1)
        try:
            end = time.monotonic() + seconds
            while time.monotonic() < end:
                before, asked = len(bus.received), time.monotonic()
                bus.publish("/ctl", "reset-layouts")
                self.frame += 1
                bus.publish("/ICDOut", '{"frameNumber":%d,"heads":[{"fynId":1,"associatedHeads":[{"id":1,"camId":0,"fynCamId":0,'
                            '"bbox":{"left":600,"top":200,"right":680,"bottom":300}}]}]}' % self.frame)
                while time.monotonic() < asked + 1:
                    if len(bus.received) > before:
                        return bus.received[before][0] - asked
                    time.sleep(0.001)
        finally:
            bus.close()
        raise AssertionError(f"the service shows no picture within {seconds} s; its log ends with\n{self.log('service')[-2000:]}")

    def shown(self):
        """The pictures that the provider was given, oldest first."""
        return [line for line in self.log("provider").splitlines() if '"sceneNumber"' in line]

    def expect_same_picture(self):
        """What the bus keeps for who joins now is what the provider was given last."""
        def is_same():
            bus = self.bus("/PRBOut")
            try:
                until(lambda: bus.received, "a picture on the bus", 1)
                return [bus.received[-1][2].decode()] == self.shown()[-1:]
            except AssertionError:
                return False
            finally:
                bus.close()
        until(is_same, "the bus keeps another picture than the provider shows")

    def status(self):
        with open(f"/proc/{self.started['service'].pid}/status", encoding="ascii") as status:
            return dict(line.split(":", 1) for line in status)

    def use(self):
        """Memory in kB, open descriptors and threads of the service."""
        values = self.status()
        return int(values["VmRSS"].split()[0]), len(os.listdir(f"/proc/{self.started['service'].pid}/fd")), int(values["Threads"])

    def peak_kb(self):
        return int(self.status()["VmHWM"].split()[0])
