"""What the command prints for a file."""

import json
import os
import re
import sys

from tiff_bytes import EXIF, MAKE, MODEL, broken, image, nested, pointer, short

NOT_A_TIFF = b"just some text"


def test_json_of_one_file(veltrace, write, tmp_path):
    content = image(texts=[(MAKE, b"Kiln & Co\0")])
    write("a.tif", content)
    run = veltrace("--json", "a.tif")
    (file,) = json.loads(run.stdout)
    assert list(file) == ["v", "seq", "path", "status", "error", "warnings", "warnings_dropped",
                          "elapsed_us", "info", "nonfinite", "latin1"]
    assert (file["path"], file["status"], file["error"], file["warnings"]) == (
        "a.tif", "ok", None, [])
    (directory,) = file["info"]
    assert list(directory)[:12] == [
        "Filename", "FileModDate", "FileSize", "Format", "FormatVersion", "Width", "Height",
        "BitDepth", "ColorType", "FormatSignature", "ByteOrder", "NewSubFileType"]
    assert list(directory)[-1] == "Make"
    assert directory["FileSize"] == os.stat(tmp_path / "a.tif").st_size == len(content)
    assert (directory["Width"], directory["Height"]) == (5, 7)
    assert directory["FormatVersion"] is None
    assert directory["FormatSignature"] == [73, 73, 42, 0]
    assert directory["Compression"] == "Uncompressed"
    assert directory["Make"] == "Kiln & Co\0"


def test_json_is_an_array_with_a_line_for_each_file(veltrace, write):
    names = [write("a.tif", image()), write("no.txt", NOT_A_TIFF), "gone.tif",
             write("b.tif", image(broken(MAKE)))]
    run = veltrace("--json", *names)
    assert run.returncode == 1
    lines = run.stdout.decode("utf-8").splitlines()
    assert (lines[0], lines[-1]) == ("[", "]")
    assert [json.loads(line.rstrip(","))["path"] for line in lines[1:-1]] == names
    files = json.loads(run.stdout)
    assert [file["status"] for file in files] == ["ok", "error", "unreadable", "warned"]
    assert files[1]["error"] == {"id": "ZEPHRA:veltrace:unhandledFileFormat",
                                 "text": "File format not recognized"}
    assert files[1]["info"] == files[2]["info"] == []
    assert files[3]["warnings"] == [{
        "id": "ZEPHRA:veltrace:badTagFormat",
        "text": "Tag ID 271 with datatype format value 99 is invalid.  "
                "Only values 0-13 are allowed.\n"}]
    assert files[3]["error"] is None


def test_text_of_one_file(veltrace, write):
    exif_at = 8 + 2 + 3 * 12 + 4
    exif = b"\x01\x00" + short(37385, 16) + b"\0\0\0\0"
    run = veltrace(write("a.tif", image(pointer(EXIF, exif_at)) + exif))
    lines = run.stdout.decode("utf-8").splitlines()
    assert lines[:2] == ["a.tif", "  Directory"]
    # The longest name in the directory that has a value is PlanarConfiguration.
    assert "    Width                5" in lines
    assert "    PlanarConfiguration  Chunky" in lines
    assert not any("FormatVersion" in line for line in lines)
    assert lines[-2:] == ["    DigitalCamera", "      Flash  16"]


def test_control_bytes_of_a_file_do_not_reach_the_terminal(veltrace, write):
    hostile = bytes(range(1, 256)) + b"\xc2\x80\0"
    write("a.tif", image(texts=[(MAKE, hostile), (MODEL, b"\x1b]0;owned\x07\0")]))
    for arguments in [["a.tif"], ["--json", "a.tif"]]:
        run = veltrace(*arguments)
        assert run.returncode == 0
        text = run.stdout.decode("utf-8")
        assert re.findall("[\0-\x09\x0b-\x1f\x7f-\x9f]", text) == []
    (file,) = json.loads(run.stdout)
    assert file["info"][0]["Make"].encode("latin-1") == hostile
    assert file["latin1"] == ["/info/0/Make"]


def test_directories_nest_as_deep_as_in_the_file(veltrace, write):
    depth = 3000
    run = veltrace("--json", write("a.tif", nested(depth)))
    assert (run.returncode, run.stderr) == (0, b"")
    sys.setrecursionlimit(10 * depth)
    directory = json.loads(run.stdout)[0]["info"][0]
    for _ in range(depth):
        (directory,) = directory["DigitalCamera"]
    assert directory == {"Flash": 1}


def test_text_of_deep_nesting_stays_narrow(veltrace, write):
    run = veltrace(write("a.tif", nested(3000)))
    assert (run.returncode, run.stderr) == (0, b"")
    assert run.stdout.endswith(b"DigitalCamera (depth 3001)\n" + b" " * 32 + b"Flash  1\n")
    assert max(map(len, run.stdout.splitlines())) < 100
