"""The comparison reports every difference, and the generator makes files of every kind."""

import os
import pathlib
import subprocess
import sys
import tempfile

import pytest
from compare import quick_place
from generating.cases import case
from generator import write
from messages import identifiers_in, missing
from reading.host import Limits
from reading.prediction import predict

HERE = pathlib.Path(__file__).parent
GRAY = HERE.parent.parent / "examples" / "gray.tif"
MODULE_READING = os.environ["VELTRACE_MODULE_READING"]

# Reads as the module does, with one thing changed.
TAMPERED = """#!/usr/bin/python3
import subprocess, sys
read = subprocess.run([{program!r}], stdin=sys.stdin, capture_output=True, check=True).stdout
assert {old!r} in read
sys.stdout.buffer.write(read.replace({old!r}, {new!r}, 1))
"""


def compare(program, *arguments):
    command = [sys.executable, HERE / "compare.py", "--module-reading", program, *arguments]
    return subprocess.run(command, capture_output=True, text=True, check=False)


def script(tmp_path, text):
    program = tmp_path / "reading"
    program.write_text(text)
    program.chmod(0o755)
    return program


@pytest.mark.parametrize(
    "old, new, line",
    [
        ('"error":null', '"error":["a","b"]', "error: expected nothing, the module has ['a', 'b']"),
        ('"warnings":[]', '"warnings":[["a","b"]]', "warnings[0]: expected nothing, the module"),
        ('"misuses":[]', '"misuses":["a"]', "misuses[0]: expected nothing, the module has 'a'"),
        ('"leftovers":[0,0]', '"leftovers":[0,1]', "leftovers[1]: expected 0, the module has 1"),
        ("002f0067", "002f0068", "output[0].Filename: expected 1 x "),  # The name's "/g".
        ("4052400000000000", "4052400000000001", "output[0].FormatSignature: expected"),
        ('"dimensions":[1,4]', '"dimensions":[4,1]', "dimensions of output[0].FormatSignature[0]"),
        ("null", '{"class":"double","dimensions":[0,0],"bits":""}', "expected nothing, the module"),
        ('"Filename","FileModDate"', '"FileModDate","Filename"', "output: expected 1 x 1 struct"),
        ('"ByteOrder",', "", "output: expected 1 x 1 struct of Filename"),
    ],
)
def test_a_difference_anywhere_is_reported(tmp_path, old, new, line):
    text = TAMPERED.format(program=MODULE_READING, old=old.encode(), new=new.encode())
    run = compare(script(tmp_path, text), GRAY)
    assert run.returncode == 1
    assert line in run.stdout
    assert run.stdout.endswith("1 differ\n")


def test_equal_readings_pass():
    run = compare(MODULE_READING, GRAY)
    assert (run.returncode, run.stdout.splitlines()[-1]) == (
        0,
        "1 files compared (0 errors, 0 warnings, 1 quiet): 0 differ",
    )


def test_no_files_is_an_error(tmp_path):
    assert compare(MODULE_READING, tmp_path).returncode == 1


def test_a_crash_is_reported_with_its_file(tmp_path):
    run = compare(script(tmp_path, "#!/bin/sh\nread some\nkill -ABRT $$\n"), GRAY)
    assert run.returncode == 1
    assert f"{bytes(GRAY)!r}\n  {tmp_path}/reading ended with status -6" in run.stdout


def test_the_prediction_for_a_file_written_by_hand(tmp_path):
    """A file written by hand: one entry, of which the directory holds too few bytes."""
    path = tmp_path / "one.tif"
    entry = b"\x31\1\2\0" + b"\x05\0\0\0" + b"\x1a\0\0\0"
    path.write_bytes(b"II*\0\x08\0\0\0" + b"\1\0" + entry + b"\0\0\0\0" + b"kil")
    prediction = predict(path)
    assert prediction["error"] is None
    assert prediction["warnings"] == [
        [
            "ZEPHRA:veltrace:badTiffTagOffsetDataRead",
            'Unable to read TIFF tag "Software" value from byte location 26.',
        ]
    ]
    fields = prediction["output"]["fields"]
    assert (len(fields), fields[0], fields[-1]) == (34, "Filename", "Thresholding")


@pytest.fixture(name="directory")
def made_directory():
    """Where the comparison keeps its files, too: not every file system holds every date."""
    with tempfile.TemporaryDirectory(prefix="veltrace-reference-", dir=quick_place()) as path:
        yield os.fsencode(path)


def test_the_generator_causes_every_message(directory):
    sys.setrecursionlimit(100000)
    identifiers = set()
    for index in range(3000):
        made = case("every message", index)
        path = directory + b"/file" + made.suffix
        write(made, path)
        prediction = predict(path, Limits(made.block_budget, made.largest_block))
        identifiers |= identifiers_in(prediction)
        if made.content is not None:
            os.unlink(path)
    assert missing(identifiers) == []


def test_the_same_seed_and_index_give_the_same_file():
    assert [case(7, index) for index in range(20)] == [case(7, index) for index in range(20)]
    assert case(7, 1).content != case(8, 1).content
