"""A whole room of real processes on this machine: broker, D-Bus, camera provider and service, and a bus client."""

import os
import random
import shutil
import signal
import socket
import struct
import subprocess
import tempfile
import threading
import time


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
    """A client of MQTT 3.1.1, as much as these tests need: QoS 0, one thread that receives."""

    def __init__(self, port, room, topics):
        self.prefix = room
        self.socket = socket.create_connection(("127.0.0.1", port), 5)
        self.socket.settimeout(None)
        self.received = []
        self._send(0x10, self._text("MQTT") + bytes([4, 2, 0, 0]) + self._text(f"endurance-{random.random()}"))
        wanted = b"".join(self._text(room + topic) + b"\0" for topic in topics)
        self._send(0x82, b"\0\1" + wanted)
        self.subscribed = threading.Event()
        threading.Thread(target=self._receive, daemon=True).start()
        assert self.subscribed.wait(10), "the broker does not answer"

    @staticmethod
    def _text(text):
        return struct.pack(">H", len(text.encode())) + text.encode()

    def _send(self, kind, body):
        length, size = len(body), b""
        while True:
            size += bytes([length % 128 | (0x80 if length > 127 else 0)])
            length //= 128
            if not length:
                break
        self.socket.sendall(bytes([kind]) + size + body)

    def _read(self, count):
        data = b""
        while len(data) < count:
            more = self.socket.recv(count - len(data))
            if not more:
                raise OSError("closed")
            data += more
        return data

    def _receive(self):
        try:
            while True:
                kind, length, shift = self._read(1)[0] >> 4, 0, 0
                while True:
                    byte = self._read(1)[0]
                    length |= (byte & 0x7F) << shift
                    shift += 7
                    if byte < 0x80:
                        break
                body = self._read(length)
                if kind == 9:
                    self.subscribed.set()
                elif kind == 3:
                    size = struct.unpack(">H", body[:2])[0]
                    self.received.append((time.monotonic(), body[2:2 + size].decode()[len(self.prefix):], body[2 + size:]))
        except OSError:
            pass

    def publish(self, topic, text):
        self._send(0x30, self._text(self.prefix + topic) + text.encode())

    def close(self):
        self.socket.close()


class Room:
    """Starts everything in a folder of its own; ends it by process id."""

    ROOM = "room"

    def __init__(self, programs):
        self.programs = programs
        self.folder = tempfile.mkdtemp(prefix="prb-endurance-")
        self.port = free_port()
        self.dbus = f"unix:path={self.folder}/dbus"
        self.store = self.path("properties.db")
        self.started = {}
        self.write("mosquitto.conf", f"listener {self.port} 127.0.0.1\nallow_anonymous true\npersistence false\n"
                   + ("user root\n" if os.geteuid() == 0 else ""))
        self.write("dbus.conf", f"<busconfig><type>session</type><listen>{self.dbus}</listen><policy context='default'>"
                   "<allow send_destination='*' eavesdrop='true'/><allow eavesdrop='true'/><allow own='*'/></policy>"
                   "</busconfig>")
        self.write("fyn.conf", "")
        self.frame = 0
        self.start_broker()
        self.start_dbus()
        self.start_provider()
        self.start_service()

    def path(self, name):
        return os.path.join(self.folder, name)

    def write(self, name, text):
        with open(self.path(name), "w", encoding="utf-8") as file:
            file.write(text)

    def url(self):
        return f"mqtt://127.0.0.1:{self.port}/{self.ROOM}"

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

    def start_dbus(self):
        if os.path.exists(self.path("dbus")):
            os.unlink(self.path("dbus"))
        self.start("dbus", server("dbus-daemon"), "--nofork", "--nopidfile", "--config-file=" + self.path("dbus.conf"))
        until(lambda: os.path.exists(self.path("dbus")), "the D-Bus")

    def start_provider(self):
        self.start("provider", os.path.join(self.programs, "printing-camera-provider"), "--bus", self.dbus)

    def start_service(self):
        return self.start("service", os.path.join(self.programs, "productionrulesd"), "--bus", self.url(), "--provider",
                          "dbus:" + self.dbus, "--properties", self.store, "--config", self.path("fyn.conf"), "--log", "stderr")

    def prb(self, *arguments, **options):
        return subprocess.run([os.path.join(self.programs, "prb"), *arguments], capture_output=True, text=True, check=False,
                              stdin=subprocess.DEVNULL, **options)

    def answer_seconds(self, seconds=20):
        """How long the service takes from a person who is new to the picture that shows the room."""
        bus = Bus(self.port, self.ROOM, ["/PRBOut"])
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

    def use(self):
        """Memory in kB, open descriptors and threads of the service."""
        folder = f"/proc/{self.started['service'].pid}"
        with open(folder + "/status", encoding="ascii") as status:
            values = dict(line.split(":", 1) for line in status)
        return int(values["VmRSS"].split()[0]), len(os.listdir(folder + "/fd")), int(values["Threads"])

    def close(self):
        for name in list(self.started):
            self.end(name)
        shutil.rmtree(self.folder, ignore_errors=True)
