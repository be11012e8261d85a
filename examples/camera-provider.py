#!/usr/bin/python3
"""A camera provider on the session bus (DBUS_SESSION_BUS_ADDRESS) that prints each scene instead of composing it."""
from dasbus.connection import SessionMessageBus
from dasbus.loop import EventLoop
from dasbus.server.interface import dbus_interface
from dasbus.typing import Str


@dbus_interface("fyn.productionrules.CameraProvider1")
class CameraProvider:
    def SetSceneJson(self, document: Str):
        print(document, flush=True)


bus = SessionMessageBus()
bus.publish_object("/fyn/productionrules/CameraProvider", CameraProvider())
# Last, so that whoever sees the name can call at once.
bus.register_service("fyn.productionrules.CameraProvider")
EventLoop().run()
