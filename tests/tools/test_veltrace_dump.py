"""The command that shows what a reader holds."""

import os
import pty
import struct
import subprocess

import pytest

DUMP = os.environ["VELTRACE_DUMP"]

HEAVY = b"+==========================================================\n"
ENTRY = struct.pack("<HHI4s", 271, 2, 4, b"a\x1b\nb")
TIFF = b"II*\0" + struct.pack("<IH", 8, 1) + ENTRY + bytes(4)


@pytest.fixture
def image(tmp_path):
    path = tmp_path / "image.tif"
    path.write_bytes(TIFF)
    return path


def run(*arguments, **settings):
    settings = {"stdout": subprocess.PIPE} | settings
    return subprocess.run([DUMP, *arguments], stderr=subprocess.PIPE, timeout=60, check=False,
                          **settings)


def test_prints_the_dump_of_a_read_file_byte_for_byte(image):
    result = run(image)
    assert (result.returncode, result.stderr) == (0, b"")
    assert result.stdout.startswith(
        HEAVY + b"TagFile:  filename ==> " + bytes(image) + b"\n\tFile pos ==> ")
    assert b"Tag ID 271: Make\n" in result.stdout
    assert b"Raw String data: a\x1b\nb\n" in result.stdout
    assert result.stdout.endswith(HEAVY + b"\n\n")


def test_shows_control_characters_on_a_terminal(image):
    try:
        ours, theirs = pty.openpty()
    except OSError as error:
        pytest.skip(f"no terminal to be had: {error}")
    process = subprocess.Popen([DUMP, image], stdout=theirs)
    os.close(theirs)
    shown = b""
    try:
        while chunk := os.read(ours, 65536):
            shown += chunk
    except OSError:
        pass  # the other end is closed
    os.close(ours)
    assert process.wait(60) == 0
    assert b"Raw String data: a\\x1b\r\nb\r\n" in shown
    assert b"\tFile size ==> 26 bytes.\r\n" in shown


def test_of_a_file_that_fails_shows_how_far_the_read_came(tmp_path):
    path = tmp_path / "short.tif"
    path.write_bytes(b"MM\0*\0\0")
    result = run(path)
    assert result.returncode == 1
    assert b"\tTiff Header Endian Format ==> Big Endian\n" in result.stdout
    assert b"The IFD data structures have not yet been initialized. \n" in result.stdout
    assert result.stderr == (
        b"veltrace: " + bytes(path) + b": error: Could not read the location of the first TIFF tag "
        b"table, the image may be corrupt. [ZEPHRA:veltrace:badTiffHeaderOffsetRead]\n")


def test_prints_warnings_beside_the_dump(tmp_path):
    path = tmp_path / "warned.tif"
    path.write_bytes(b"II*\0" + struct.pack("<IH", 8, 1) + ENTRY + struct.pack("<I", 1000))
    result = run(path)
    assert result.returncode == 0
    assert b": warning: The pointer to a secondary IFD exceeds the size of" in result.stderr


@pytest.mark.parametrize("name", ["missing.tif", "text.txt"])
def test_of_a_file_that_no_reader_takes_is_empty(tmp_path, name):
    (tmp_path / "text.txt").write_bytes(b"no image")
    result = run(tmp_path / name)
    assert (result.returncode, result.stdout) == (1, b"")
    assert b": error: " in result.stderr


@pytest.mark.parametrize("arguments", [[], ["a.tif", "b.tif"], ["--unknown", "a.tif"]])
def test_wrong_usage_is_2(arguments):
    result = run(*arguments)
    assert (result.returncode, result.stdout) == (2, b"")
    assert result.stderr


def test_output_that_cannot_be_written_is_3(image):
    with open("/dev/full", "wb") as full:
        result = run(image, stdout=full)
    assert result.returncode == 3
    assert result.stderr == b"veltrace: cannot write the output\n"
