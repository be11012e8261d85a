"""The published contract in api/, as the checks beside this file read it."""

import copy
import json
import pathlib
import re

import jsonschema

ROOT = pathlib.Path(__file__).resolve().parents[2]
SCHEMAS = ROOT / "api" / "schemas"


def read_json(path):
    return json.loads(path.read_text(encoding="utf-8"))


def read_schemas():
    """File name -> schema."""
    return {path.name: read_json(path) for path in sorted(SCHEMAS.glob("*.json"))}


def subschemas(schema):
    """The schema and all that stands inside of it."""
    yield schema
    children = schema.values() if isinstance(schema, dict) else schema if isinstance(schema, list) else ()
    for child in children:
        yield from subschemas(child)


def closed(schema):
    """The schema without leave for members that it does not name."""
    schema = copy.deepcopy(schema)
    for part in subschemas(schema):
        if isinstance(part, dict) and isinstance(part.get("properties"), dict) and "oneOf" not in part:
            part.setdefault("additionalProperties", False)
    return schema


class Validators:
    """Finds what is wrong with documents, by the name of a schema file."""

    def __init__(self, schemas):
        # A schema of a document that the service sends is open; here nothing may go unnamed.
        store = {f"file:///{name}": closed(schema) for name, schema in schemas.items()}
        self._validators = {}
        for name in schemas:
            schema = store[f"file:///{name}"]
            resolver = jsonschema.RefResolver(f"file:///{name}", schema, store=store)
            self._validators[name] = jsonschema.Draft202012Validator(schema, resolver=resolver)

    def faults(self, name, document):
        for error in self._validators[name].iter_errors(document):
            place = "/".join(str(step) for step in error.absolute_path)
            yield f"{place or 'the document'}: {error.message[:200]}"


class Topics:
    """Which schema a topic's payload has, from api/asyncapi.json."""

    def __init__(self):
        channels = read_json(ROOT / "api" / "asyncapi.json")["channels"].values()
        self._rows = []
        for channel in channels:
            (message,) = channel["messages"].values()
            pattern = re.compile(re.sub(r"\\\{\w+\\\}", "[0-9]+", re.escape(channel["address"])))
            is_text = message.get("contentType") == "text/plain"
            self._rows.append((pattern, pathlib.PurePath(message["payload"]["$ref"]).name, is_text))

    def faults(self, validators, topic, payload):
        """Payload as it stands in a line of a recording or replay: an object or array, or a text."""
        for pattern, schema, is_text in self._rows:
            if pattern.fullmatch(topic):
                text = payload if isinstance(payload, str) else json.dumps(payload)
                return list(validators.faults(schema, text if is_text else payload))
        return [f"no topic {topic}"]
