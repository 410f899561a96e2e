"""File names of any bytes."""

import os

import pytest
from record_checks import check_record
from tiff_bytes import image

# Each name, and how it is shown.
NAMES = {
    b"new\nline.tif": b"new\\nline.tif",
    b"\x1b[31mred\x1b[0m.tif": b"\\x1b[31mred\\x1b[0m.tif",
    b"\xff\xfe.tif": b"\\xff\\xfe.tif",
    b"caf\xc3\xa9.tif": b"caf\xc3\xa9.tif",
    b"\xc2\x9b2J.tif": b"\\xc2\\x9b2J.tif",
    b"[a,b]": b"[a,b]",
    b"{}": b"{}",
    b"%s%n%99999999d.tif": b"%s%n%99999999d.tif",
    b'quote".tif': b'quote".tif',
    b"back\\slash.tif": b"back\\\\slash.tif",
    b"tab\tdel\x7f.tif": b"tab\\tdel\\x7f.tif",
}


def control_bytes(output):
    return [byte for byte in output if (byte < 0x20 or byte == 0x7F) and byte != 0x0A]


@pytest.mark.parametrize("name, visible", NAMES.items())
def test_text_shows_a_name_on_one_harmless_line(veltrace, write, name, visible):
    run = veltrace(write(name, image()))
    assert (run.returncode, run.stderr) == (0, b"")
    assert run.stdout.splitlines()[0] == visible
    assert control_bytes(run.stdout) == []


@pytest.mark.parametrize("name, visible", NAMES.items())
def test_a_message_shows_a_name_on_one_harmless_line(veltrace, name, visible):
    run = veltrace(name)
    assert run.returncode == 1
    assert run.stderr == (b"veltrace: " + visible + b': error: Could not open file "' + visible +
                          b'". [ZEPHRA:veltrace:badFilename]\n')


@pytest.mark.parametrize("name", NAMES)
def test_a_record_contains_every_byte_of_a_name(veltrace, write, name):
    run = veltrace("--ndjson", write(name, image()))
    assert (run.returncode, run.stderr) == (0, b"")
    record = check_record(run.stdout)
    assert record["path"] == name
    filename = record["info"][0]["Filename"]
    assert (filename if isinstance(filename, bytes) else filename.encode()) == name
    assert control_bytes(run.stdout) == []


def test_a_name_like_an_option_follows_a_double_dash(veltrace, write):
    run = veltrace("--", write("--json", image()))
    assert run.returncode == 0
    assert run.stdout.startswith(b"--json\n")


def test_a_name_that_cannot_be_encoded_is_passed_on_as_it_is(veltrace, write, tmp_path):
    name = write(b"\xf0\x28\x8c\x28", image())
    assert os.listdir(os.fsencode(tmp_path)) == [name]
    assert veltrace(name).returncode == 0
