"""Checks of a record, and the values of the file that it stands for."""

import base64
import copy
import functools
import json
import math
import pathlib
import re

import jsonschema

SCHEMA = pathlib.Path(__file__).resolve().parents[2] / "cli" / "record" / "record_schema.json"
# Controls and line separators, except the newline at the end of the record.
NEVER_RAW = re.compile("[\0-\x1f\x7f-\x9f\u2028\u2029]")


@functools.cache
def validator():
    schema = json.loads(SCHEMA.read_bytes())
    jsonschema.Draft202012Validator.check_schema(schema)
    return jsonschema.Draft202012Validator(schema)


def members(pairs):
    names = [name for name, _ in pairs]
    assert len(names) == len(set(names)), f"a name twice among {names}"
    return dict(pairs)


def no_constant(name):
    raise AssertionError(f"{name} is not JSON")


def holder(record, place):
    """The list or object that contains the value at a JSON Pointer, and the key or index there."""
    assert place.startswith("/"), place
    steps = [step.replace("~1", "/").replace("~0", "~") for step in place[1:].split("/")]
    steps = [step if re.fullmatch("0|[1-9][0-9]*", step) is None else int(step) for step in steps]
    value = record
    for step in steps[:-1]:
        value = value[step if isinstance(value, list) else str(step)]
    return value, steps[-1] if isinstance(value, list) else str(steps[-1])


def check_record(line):
    """Asserts that `line`, of bytes, is one record of the format ndjson, and returns it with what
    JSON cannot represent: `path` as bytes whatever its form, texts that are not UTF-8 as bytes, and
    NaN and infinities as numbers. For records that nest no deeper than Python recurses."""
    text = line.decode("utf-8")
    assert text.endswith("\n")
    assert NEVER_RAW.search(text[:-1]) is None, text
    written = json.loads(text, object_pairs_hook=members, parse_constant=no_constant)
    validator().validate(written)
    record = copy.deepcopy(written)
    places = [entry["at"] for entry in record["nonfinite"] + record.get("omitted", [])]
    places += record["latin1"]
    assert len(places) == len(set(places)), f"a place twice among {places}"
    for entry in written["nonfinite"]:
        where, key = holder(record, entry["at"])
        assert where[key] is None, entry
        where[key] = float(entry["is"])
        assert not math.isfinite(where[key])
    for place in written["latin1"]:
        where, key = holder(record, place)
        content = where[key].encode("latin-1")
        where[key] = content
        assert not is_utf8(content), place
    for entry in written.get("omitted", []):
        where, key = holder(record, entry["at"])
        assert where[key] is None, entry
    record["path"] = path_of(record)
    return record


def path_of(record):
    if "path" in record:
        return record["path"].encode("utf-8")
    path = base64.b64decode(record.pop("path_b64"), validate=True)
    assert not is_utf8(path), path
    return path


def is_utf8(content):
    try:
        content.decode("utf-8")
    except UnicodeDecodeError:
        return False
    return True
