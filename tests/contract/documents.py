#!/usr/bin/env python3
"""Checks the schemas of api/: that each is one, that every document of the recordings in tests/, of their replays, of a
simulated meeting and of the documentation is as they say, and that a document broken in one way is not.

usage: documents.py PRB
"""

import copy
import json
import re
import subprocess
import sys

import jsonschema

import contract

# Recordings that show what the service does with input that no producer ought to send: how many documents are so.
WRONG_ON_PURPOSE = {
    "every_effect": 2,
    "mode_switching": 1,
    "multistream_hostile": 3,
    "secondary_role": 1,
    "secondary_takes_no_lead": 2,
    "speaker_hostile": 10,
}

# Schema, where its first example is broken, and what stands there instead: nothing, or a value.
NOTHING = object()
HEAD = "heads/0/associatedHeads/0/"
STREAM = "streams/0/"
TILE = "streams/0/scene/0/"
LAYOUT = "currentLayout/layouts/0/"
BROKEN = (
    ("vision-result", "heads", NOTHING),
    ("vision-result", "heads", {}),
    ("vision-result", "frameNumber", NOTHING),
    ("vision-result", "frameNumber", -1),
    ("vision-result", "timestamp", "2023-11-14T22:13:20Z"),
    ("vision-result", "persons", []),
    ("vision-result", "heads/0/fynId", NOTHING),
    ("vision-result", "heads/0/fynId", -1),
    ("vision-result", "heads/0/associatedHeads", []),
    ("vision-result", "heads/0/name", "Ada"),
    ("vision-result", HEAD + "camId", NOTHING),
    ("vision-result", HEAD + "camId", "front"),
    ("vision-result", HEAD + "bbox", NOTHING),
    ("vision-result", HEAD + "bbox", [600, 200, 680, 300]),
    ("vision-result", HEAD + "bbox/right", NOTHING),
    ("vision-result", HEAD + "bbox/left", 600.5),
    ("vision-result", HEAD + "bbox/width", 80),
    ("vision-result", HEAD + "isSpeaker", 1),
    ("vision-result", HEAD + "isSpeeker", True),
    ("vision-result", HEAD + "yaw", "5"),
    ("vision-result", HEAD + "qfactor", -1),
    ("vision-result", HEAD + "proximityGroup", [1, None]),
    ("camera", "fynCamId", NOTHING),
    ("camera", "fynCamId", "0"),
    ("camera", "cameraType", 1.5),
    ("cameras", "0/ids", NOTHING),
    ("cameras", "0/isAttached", "true"),
    ("cameras", "0/ids/fynCamId", 2147483648),
    ("cameras", "0/ids/name", "front"),
    ("cameras", "0/caps/hasIcd", 1),
    ("camera-parameters", "imageWidth", NOTHING),
    ("camera-parameters", "imageHeight", 0),
    ("camera-parameters", "horizontalPeriod", -1),
    ("camera-moved", "fynCamId", NOTHING),
    ("control", "", "reset"),
    ("tracking-mode", "", "groupframing"),
    ("pass-through", "", True),
    ("scene", "version", 2),
    ("scene", "streams", NOTHING),
    ("scene", STREAM + "isVirtualCamera", False),
    ("scene", STREAM + "TrackingMode", NOTHING),
    ("scene", STREAM + "layoutType", "LARGE_PROXIMITY"),
    ("scene", STREAM + "animation", "wipe"),
    ("scene", STREAM + "uid", "front"),
    ("scene", STREAM + "scene", []),
    ("scene", STREAM + "destRef/width", "1280"),
    ("scene", TILE + "source/xoffset", 0.5),
    ("scene", TILE + "source/left", 0),
    ("scene", TILE + "frameType", "HEAD"),
    ("scene", TILE + "debugBounds", {"xoffset": 0, "yoffset": 0, "width": 0, "height": 0}),
    ("scene-debug", "streams", [{}]),
    ("scene-secondary", STREAM + "nextLayout", NOTHING),
    ("scene-secondary", STREAM + "adjustmentFrame", 0),
    ("scene-secondary", TILE + "heads", [3, 3]),
    ("scene-secondary", TILE + "frameLayout", "HeadSingle"),
    ("people-count", "face_count", -1),
    ("people-count", "smallestFaceHeight", NOTHING),
    ("timers", "nextLayout", NOTHING),
    ("timers", LAYOUT + "layoutTimer", -1),
    ("timers", LAYOUT + "frames/0/headPosition", "INVALID"),
    ("decision", "kind", "changed"),
    ("decision", "waitedMs", NOTHING),
    ("decision", "from", "NONE"),
    ("decision", "reason", ""),
    ("forward-message", "forwards", []),
    ("forward-message", "forwards/0/to", "ctl"),
    ("status", "state", "down"),
    ("status", "startedAt", NOTHING),
    ("status", "mode", "people"),
    ("recording-line", "t", NOTHING),
    ("recording-line", "t", 1700000000000),
    ("recording-line", "provider", "up"),
    ("recording-line", "note", "monday"),
    ("recording-line", "recorded/startedAt", "monday"),
    ("recording-line", "topic", "/ctl"),
    ("replay-line", "advertise", "/PRBOut"),
    ("replay-line", "t", 0.5),
)


def broken(document, place, value):
    """A copy of the document in which another value, or nothing, stands at the place."""
    if not place:
        return value
    document = copy.deepcopy(document)
    *path, last = [int(step) if step.isdigit() else step for step in place.split("/")]
    inner = document
    for step in path:
        inner = inner[step]
    if value is NOTHING:
        del inner[last]
    else:
        inner[last] = value
    return document


def schema_faults(schemas, validators):
    for name, schema in schemas.items():
        try:
            jsonschema.Draft202012Validator.check_schema(schema)
        except jsonschema.SchemaError as error:
            yield f"{name} is no schema: {error.message}"
        if "examples" not in schema and name != "types.json":
            yield f"{name} has no example"
        for number, example in enumerate(schema.get("examples", ()), 1):
            for fault in validators.faults(name, example):
                yield f"{name}, example {number}: {fault}"
    for name, place, value in BROKEN:
        example = schemas[f"{name}.json"]["examples"][0]
        if not list(validators.faults(f"{name}.json", broken(example, place, value))):
            yield f"{name} lets a document pass with {place} {'left out' if value is NOTHING else repr(value)}"
    for name in sorted(set(schemas) - {"types.json", "signal.json"} - {f"{row[0]}.json" for row in BROKEN}):
        yield f"no broken document for {name}"


def line_faults(lines, schema, validators, topics):
    for number, line in enumerate(lines, 1):
        if not line.strip():
            continue
        event = json.loads(line)
        faults = list(validators.faults(schema, event))
        if "topic" in event:
            faults += topics.faults(validators, event["topic"], event["payload"])
        if faults:
            yield f"line {number}: {faults[0]}"


def recording_faults(prb, name, text, validators, topics):
    """What is wrong with a recording, or with what the service makes of it."""
    wrong = list(line_faults(text.splitlines(), "recording-line.json", validators, topics))
    expected = WRONG_ON_PURPOSE.get(name, 0)
    if len(wrong) != expected:
        yield f"{name}: {len(wrong)} faults, expected {expected}"
        yield from (f"{name}, {fault}" for fault in wrong)
    replay = subprocess.run([prb, "replay", "-", "--log", "E", "--decisions", "--dump", "/dev/null"], input=text,
                            stdout=subprocess.PIPE, stderr=subprocess.PIPE, universal_newlines=True)
    if replay.returncode:
        yield f"replay of {name}: {replay.stderr}"
    for fault in line_faults(replay.stdout.splitlines(), "replay-line.json", validators, topics):
        yield f"replay of {name}, {fault}"


def documentation_faults(validators):
    """The examples of complete documents in the pages."""
    for page, schemas in (("README.md", ("vision-result", "scene")), ("docs/operations.md", ("status",))):
        blocks = re.findall(r"^```json\n(.*?)^```", (contract.ROOT / page).read_text(encoding="utf-8"), re.M | re.S)
        if len(blocks) != len(schemas):
            yield f"{page} has {len(blocks)} JSON examples, expected {len(schemas)}"
        for block, schema in zip(blocks, schemas):
            for fault in validators.faults(f"{schema}.json", json.loads(block)):
                yield f"{page}, {schema}: {fault}"


def main(arguments):
    if len(arguments) != 1 or arguments[0].startswith("-"):
        print(__doc__, file=sys.stderr)
        return 2
    prb = arguments[0]
    schemas = contract.read_schemas()
    validators = contract.Validators(schemas)
    topics = contract.Topics()
    faults = list(schema_faults(schemas, validators)) + list(documentation_faults(validators))
    recordings = {path.parent.name: path.read_text(encoding="utf-8")
                  for path in sorted(contract.ROOT.glob("tests/**/recording.jsonl"))}
    simulate = [prb, "simulate", "--seed", "1", "--people", "3", "--minutes", "1", "--cameras", "2", "--errors", "real"]
    recordings["simulated meeting"] = subprocess.run(simulate, check=True, stdout=subprocess.PIPE,
                                                     universal_newlines=True).stdout
    for name, text in recordings.items():
        faults += recording_faults(prb, name, text, validators, topics)
    for fault in faults:
        print(fault)
    print(f"{len(schemas)} schemas, {len(BROKEN)} broken documents, {len(recordings)} recordings, {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
