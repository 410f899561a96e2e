"""The checks of a record accept records and reject everything else."""

import json
import math

import jsonschema
import pytest

from record_checks import check_record

FINE = {"v": 1, "seq": 0, "path": "a.tif", "status": "ok", "error": None, "warnings": [],
        "warnings_dropped": 0, "elapsed_us": 9, "info": [{"Width": 7}], "nonfinite": [],
        "latin1": []}


def line(without=(), **changes):
    record = {name: value for name, value in (FINE | changes).items() if name not in without}
    return json.dumps(record, ensure_ascii=False).encode("utf-8") + b"\n"


def test_a_record_comes_back():
    assert check_record(line()) == FINE | {"path": b"a.tif"}


def test_values_that_json_cannot_represent_come_back():
    record = check_record(line(
        without=["path"], path_b64="Y2Fm6Q==", latin1=["/info/0/Make", "/info/0/a~1b/1"],
        info=[{"Make": "caf\u00e9", "a/b": ["x", "\u00ff"], "1": [[1, None]]}],
        nonfinite=[{"at": "/info/0/1/0/1", "is": "-Infinity"}]))
    assert record["path"] == b"caf\xe9"
    assert "path_b64" not in record
    assert record["info"] == [{"Make": b"caf\xe9", "a/b": ["x", b"\xff"], "1": [[1, -math.inf]]}]


@pytest.mark.parametrize("changes", [
    {"v": 2}, {"seq": -1}, {"seq": "0"}, {"status": "fine"}, {"status": "error"},
    {"error": {"id": "X", "text": "x"}}, {"warnings": [{"id": "X"}]}, {"info": [7]},
    {"info": [{"A": {"B": 1}}]}, {"extra": 1}, {"without": ["path"]}, {"path_b64": "/w=="},
    {"without": ["path"], "path_b64": "/w="}, {"nonfinite": [{"at": "/info/0/Width", "is": "nan"}]},
    {"latin1": ["/path"]}, {"omitted": [{"at": "/info/0/Width", "size": [1]}]},
    {"status": "crashed", "error": {"id": "X", "text": "x"}}])
def test_records_that_do_not_fit_the_schema_are_rejected(changes):
    with pytest.raises(jsonschema.ValidationError):
        check_record(line(**changes))


@pytest.mark.parametrize("changes", [
    {"nonfinite": [{"at": "/info/0/Width", "is": "NaN"}]},
    {"omitted": [{"at": "/info/0/Width", "size": [1, 9]}]},
    {"info": [{"Make": "caf"}], "latin1": ["/info/0/Make"]},
    {"without": ["path"], "path_b64": "YQ=="},
    {"info": [{"Make": "\u00ff"}], "latin1": ["/info/0/Make", "/info/0/Make"]}])
def test_lists_that_do_not_fit_the_values_are_rejected(changes):
    with pytest.raises(AssertionError):
        check_record(line(**changes))


@pytest.mark.parametrize("content", [
    line()[:-1], line() + b"\n", b" \n" + line(), line(path="\x7f"), line(path="\u0085"),
    line(path="\u2028"), line(info=[{"A": math.nan}]), line()[:-2] + b',"v":1}\n'])
def test_lines_that_are_not_strict_are_rejected(content):
    with pytest.raises(AssertionError):
        check_record(content)
