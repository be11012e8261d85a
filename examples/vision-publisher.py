#!/usr/bin/python3
"""Publishes the vision results of one person who walks through the picture: vision-publisher.py HOST PORT ROOM"""
import json
import sys
import time

import paho.mqtt.client as mqtt

if len(sys.argv) != 4:
    sys.exit(__doc__)
host, port, room = sys.argv[1], int(sys.argv[2]), sys.argv[3]
client = mqtt.Client(protocol=mqtt.MQTTv5)
client.connect(host, port)
client.loop_start()

# Retained, so that a service that starts later knows its cameras.
for topic, document in (
    ("/camera", {"fynCamId": 0}),
    ("/cameras", [{"isAttached": True, "ids": {"fynCamId": 0, "uid": "front"}, "caps": {"hasIcd": True}}]),
    ("/cameraParameters/head", {"imageWidth": 1920, "imageHeight": 1080}),
):
    client.publish(room + topic, json.dumps(document), qos=1, retain=True)

frame = 0
while True:
    left = frame * 4 % 1800
    head = {"id": 1, "camId": 0, "fynCamId": 0, "bbox": {"left": left, "top": 200, "right": left + 80, "bottom": 300}}
    result = {"frameNumber": frame, "heads": [{"fynId": 1, "associatedHeads": [head]}]}
    client.publish(room + "/ICDOut", json.dumps(result))
    frame += 1
    time.sleep(1 / 30)
