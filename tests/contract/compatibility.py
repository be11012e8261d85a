#!/usr/bin/env python3
"""Compares the contract in api/ with that of the last release, api/released.json. A document that a producer of then
sends must still be taken, a consumer of then must understand what the service sends now; else the version's first
number (before 1.0.0 the second) must be another one.

usage: compatibility.py              check
       compatibility.py --release    take the present contract for the released one, when it may be that
       compatibility.py --self-test  check that the check finds what it must
"""

import copy
import json
import re
import sys

import jsonschema

import contract

RELEASED = contract.ROOT / "api" / "released.json"
REMARKS = {"$schema", "$defs", "title", "description", "examples"}
# The larger the number, the fewer documents pass, and the other way round.
LOWER_LIMITS = ("minimum", "minLength", "minItems", "minProperties")
UPPER_LIMITS = ("maximum", "maxLength", "maxItems", "maxProperties")
COMPARED = {"type", "enum", "const", "properties", "additionalProperties", "required", "items", "anyOf", "oneOf",
            *LOWER_LIMITS, *UPPER_LIMITS}


def expanded(schema, file, schemas):
    """The schema with what it refers to in the place of each reference, and without remarks."""
    if isinstance(schema, list):
        return [expanded(part, file, schemas) for part in schema]
    if not isinstance(schema, dict):
        return schema
    result = {}
    if "$ref" in schema:
        name, _, pointer = schema["$ref"].partition("#")
        target = schemas[name or file]
        for step in pointer.split("/")[1:]:
            target = target[step]
        result = expanded(target, name or file, schemas)
    for key, value in schema.items():
        if key == "properties":
            result[key] = {name: expanded(part, file, schemas) for name, part in value.items()}
        elif key not in REMARKS | {"$ref"}:
            result[key] = expanded(value, file, schemas)
    return result


def types(schema):
    named = schema.get("type", ["null", "boolean", "number", "string", "array", "object"])
    named = {named} if isinstance(named, str) else set(named)
    return named | {"integer"} if "number" in named else named


def values(schema):
    """All that the schema lets pass, where it lists that; else nothing."""
    return schema.get("enum", [schema["const"]] if "const" in schema else None)


def member_faults(before, after, place):
    for name in set(after.get("required", ())) - set(before.get("required", ())):
        yield f"{place}: {name} may not be left out"
    known = after.get("properties", {})
    other = after.get("additionalProperties", True)
    for name, part in before.get("properties", {}).items():
        yield from narrowing(part, known.get(name, other), f"{place}/{name}")
    yield from narrowing(before.get("additionalProperties", True), other, f"{place}, other members")


def narrowing(before, after, place):
    """Why a document that the one schema lets pass may be refused by the other; both expanded."""
    if before == after or after is True or before is False:
        return
    if after is False:
        yield f"{place}: not known"
        return
    before = {} if before is True else before
    if values(before) is not None:
        validator = jsonschema.Draft202012Validator(after)
        yield from (f"{place}: no {value!r}" for value in values(before) if not validator.is_valid(value))
        return
    if values(after) is not None:
        yield f"{place}: only certain values"
    if types(before) - types(after):
        yield f"{place}: {', '.join(sorted(types(after)))} instead of {', '.join(sorted(types(before)))}"
    infinity = float("inf")
    for limit in LOWER_LIMITS:
        if after.get(limit, -infinity) > before.get(limit, -infinity):
            yield f"{place}: {limit} {after[limit]}"
    for limit in UPPER_LIMITS:
        if after.get(limit, infinity) < before.get(limit, infinity):
            yield f"{place}: {limit} {after[limit]}"
    yield from member_faults(before, after, place)
    yield from narrowing(before.get("items", True), after.get("items", True), f"{place}/...")
    for word in ("anyOf", "oneOf"):
        choices = after.get(word)
        for number, part in enumerate(before.get(word, [True]) if choices else (), 1):
            if all(list(narrowing(part, choice, place)) for choice in choices):
                yield f"{place}: no choice for what was number {number}"
    for word in after.keys() - COMPARED:
        if after[word] != before.get(word):
            yield f"{place}: {word} is another"


def present():
    """The contract as it stands in api/, in the form of the released one."""
    document = contract.read_json(contract.ROOT / "api" / "asyncapi.json")
    topics = {}
    for name, operation in document["operations"].items():
        channel = document["channels"][operation["channel"]["$ref"].rpartition("/")[2]]
        (message,) = channel["messages"].values()
        topics[name] = {"action": operation["action"], "address": channel["address"],
                        "schema": message["payload"]["$ref"].rpartition("/")[2],
                        "contentType": message.get("contentType", document["defaultContentType"]),
                        **operation["bindings"]["mqtt"]}
    # Old recordings must stay readable, and what reads replays must go on.
    topics["recordings"] = {"action": "receive", "schema": "recording-line.json"}
    topics["replays"] = {"action": "send", "schema": "replay-line.json"}
    return {"version": document["info"]["version"], "topics": topics, "schemas": contract.read_schemas()}


def breaks(released, now):
    for name, topic in released["topics"].items():
        if topic != now["topics"].get(name):
            yield f"{name} was {topic}, is {now['topics'].get(name)}"
            continue
        file = topic["schema"]
        then_schema, now_schema = (expanded(side["schemas"][file], file, side["schemas"]) for side in (released, now))
        if topic["action"] == "receive":
            yield from (f"{fault} (what was sent is refused)" for fault in narrowing(then_schema, now_schema, file))
            validator = jsonschema.Draft202012Validator(now_schema)
            for example in released["schemas"][file]["examples"]:
                if not validator.is_valid(example):
                    yield f"{file}: refuses the released example {json.dumps(example)[:120]}"
        else:
            yield from (f"{fault} (what is sent was not known)" for fault in narrowing(now_schema, then_schema, file))


def breaking_number(version):
    first, second, _ = version.split(".")
    return (first, second) if first == "0" else (first,)


def faults(released, now, project_version):
    if now["version"] != project_version:
        yield f"api/asyncapi.json is of version {now['version']}, CMakeLists.txt says {project_version}"
    if breaking_number(project_version) == breaking_number(released["version"]):
        yield from breaks(released, now)


def changed(document, file, place, value):
    """A contract in which something stands elsewhere; None takes a member out."""
    document = copy.deepcopy(document)
    inner = document["schemas"][file] if file else document
    *path, last = place.split("/")
    for step in path:
        inner = inner[step]
    if value is None:
        del inner[last]
    else:
        inner[last] = value(inner.get(last)) if callable(value) else value
    return document


def self_test(base):
    head = "$defs/head/properties/"
    count = "properties/"
    # File, place, change and whether it breaks: first of a document that comes in, then of one that leaves.
    samples = (
        ("vision-result.json", "description", "Other words.", False),
        ("vision-result.json", head + "hat", {"type": "boolean"}, False),
        ("vision-result.json", head + "yaw", None, True),
        ("vision-result.json", head + "yaw/type", "integer", True),
        ("vision-result.json", head + "pitch/type", "number", False),
        ("vision-result.json", head + "camId/minimum", -5, False),
        ("vision-result.json", head + "camId/maximum", 7, True),
        ("vision-result.json", "required", lambda names: names + ["timestamp"], True),
        ("vision-result.json", "required", ["heads"], False),
        ("vision-result.json", "maxProperties", 2, True),
        ("types.json", "$defs/rect/properties/left/minimum", 0, True),
        ("control.json", "enum", lambda texts: texts + ["rest"], False),
        ("control.json", "enum", lambda texts: texts[1:], True),
        ("recording-line.json", "properties/provider/enum", ["up", "down"], True),
        ("recording-line.json", "properties/note", {"type": "string"}, False),
        ("people-count.json", count + "hats", {"type": "integer"}, False),
        ("people-count.json", "required", ["face_count"], True),
        ("people-count.json", count + "face_count", {"type": "number"}, True),
        ("people-count.json", count + "face_count", {"type": "integer", "minimum": 1, "maximum": 9}, False),
        ("types.json", "$defs/animation/enum", ["cut"], True),  # a secondary scene comes in too
        ("decision.json", "properties/kind/enum", lambda texts: texts + ["rest"], True),
        ("decision.json", "properties/kind/enum", lambda texts: texts[1:], False),
        ("scene.json", "properties/version/const", 2, True),
        ("scene.json", "properties/streams/items/anyOf", lambda choices: choices[:1], False),
        ("scene.json", "properties/streams/items/anyOf", lambda choices: choices + [{"type": "null"}], True),
        ("", "topics/sendScene/retain", False, True),
        ("", "topics/receiveControl", None, True),
        ("", "topics/receiveHats", {"action": "receive", "schema": "signal.json"}, False),
    )
    failed = 0
    for file, place, value, breaking in samples:
        now = changed(base, file, place, value)
        found = list(faults(base, now, base["version"]))
        first, second, third = base["version"].split(".")
        other = ".".join((first, str(int(second) + 1), third) if first == "0" else (str(int(first) + 1), second, third))
        now["version"] = other
        if bool(found) != breaking or list(faults(base, now, other)):
            print(f"{file} {place}: {'must' if breaking else 'must not'} break, found {found}")
            failed += 1
    print(f"{len(samples) - failed} of {len(samples)} samples as expected")
    return 1 if failed else 0


def one_line_each(document):
    """JSON with a line for each topic and schema, so that a difference shows which one."""
    members = []
    for key, value in document.items():
        if isinstance(value, dict):
            lines = ",\n".join(f"    {json.dumps(name)}: {json.dumps(part)}" for name, part in value.items())
            members.append(f"  {json.dumps(key)}: {{\n{lines}\n  }}")
        else:
            members.append(f"  {json.dumps(key)}: {json.dumps(value)}")
    return "{\n" + ",\n".join(members) + "\n}"


def main(arguments):
    now = present()
    if arguments == ["--self-test"]:
        return self_test(now)
    if arguments not in ([], ["--release"]):
        print(__doc__, file=sys.stderr)
        return 2
    build = (contract.ROOT / "CMakeLists.txt").read_text(encoding="utf-8")
    project = re.search(r"project\(\w+ VERSION ([0-9.]+)", build)
    released = contract.read_json(RELEASED) if RELEASED.exists() else now
    found = list(faults(released, now, project[1]))
    for fault in found:
        print(fault)
    if found:
        print("The contract is broken. Mend it, or raise the version in CMakeLists.txt and api/asyncapi.json: the first "
              "number, before 1.0.0 the second.")
        return 1
    if arguments:
        RELEASED.write_text(one_line_each(now) + "\n", encoding="utf-8")
    print(f"the contract of version {project[1]} keeps that of version {released['version']}")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
