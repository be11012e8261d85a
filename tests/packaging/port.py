"""Builds the example of a port against an installed package and runs it: a vision result in, the picture out.

usage: port.py PREFIX              the package lies beneath PREFIX (/usr)
       port.py --install-from TREE first installs what the build tree TREE has made, in a folder of this test
"""

import json
import os
import signal
import socket
import subprocess
import sys
import tempfile

EXAMPLE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "examples", "port")
LIMIT_SECONDS = 60
RESULT = {"frameNumber": 1, "heads": [{"fynId": 1, "associatedHeads": [
    {"id": 1, "camId": 0, "fynCamId": 0, "bbox": {"left": 600, "top": 200, "right": 680, "bottom": 300}}]}]}


def run(*command):
    done = subprocess.run(command, check=False, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    assert done.returncode == 0, f"{' '.join(command)}: {done.stdout}"
    return done.stdout


def install(tree, prefix):
    for component in ("library", "development"):
        run("cmake", "--install", tree, "--prefix", prefix, "--component", component)


def build(prefix, folder):
    run("cmake", "-S", EXAMPLE, "-B", folder, f"-DCMAKE_PREFIX_PATH={prefix}", "-DCMAKE_BUILD_TYPE=Release")
    run("cmake", "--build", folder)
    return os.path.join(folder, "port")


class Device:
    """The folders of a device, its sockets and the service on it."""

    def __init__(self, program, folder):
        paths = {name: os.path.join(folder, name) for name in ("bus", "lasting", "passing")}
        for path in paths.values():
            os.mkdir(path)
        with open(os.path.join(paths["passing"], "vendor.fyndebug.decisions"), "w", encoding="utf-8") as file:
            file.write("1")
        self.bus = paths["bus"]
        self.heard = self.listen("device")
        self.camera = self.listen("camera")
        environment = {f"DEVICE_{name.upper()}": path for name, path in paths.items()}
        ready, service_ready = os.pipe()
        environment |= {"FYN_CONF_NAME": "/nonexistent", "PRB_READY_FD": str(service_ready)}
        self.process = subprocess.Popen([program], env={**os.environ, **environment}, pass_fds=(service_ready,),
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(service_ready)
        self.is_ready = os.read(ready, 1) == b"r"
        os.close(ready)

    def listen(self, name):
        listener = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        listener.settimeout(LIMIT_SECONDS)
        listener.bind(os.path.join(self.bus, name))
        return listener

    def await_topic(self, topic):
        while True:
            name, _, text = self.heard.recv(1 << 18).decode().partition(" ")
            if name == topic:
                return text

    def end(self):
        self.process.send_signal(signal.SIGTERM)
        return self.process.wait(LIMIT_SECONDS)


def check(program, folder):
    device = Device(program, folder)
    try:
        assert device.is_ready, "the service ended before it was ready"
        with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as sender:
            sender.sendto(f"/ICDOut {json.dumps(RESULT)}".encode(), os.path.join(device.bus, "service"))
        decision = json.loads(device.await_topic("/PRBDecisions"))
        assert decision["kind"], decision
        scene = device.await_topic("/PRBOut")
        assert json.loads(scene)["streams"][0]["scene"], scene
        assert device.camera.recv(1 << 18).decode() == scene
        assert device.end() == 0
    finally:
        device.process.kill()


def main(arguments):
    with tempfile.TemporaryDirectory(prefix="prb-port-") as folder:
        prefix = arguments[-1]
        if arguments[0] == "--install-from":
            prefix = os.path.join(folder, "usr")
            install(arguments[1], prefix)
        program = build(prefix, os.path.join(folder, "build"))
        check(program, folder)
        print(f"the port runs against {arguments[-1]}")


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
