"""The values that --field, --max-values and --omit-larger-than select."""

import csv
import io
import json
import pathlib

from record_checks import check_record
from tiff_bytes import MAKE, image

EXAMPLES = pathlib.Path(__file__).resolve().parents[2] / "examples"
CAMERA = EXAMPLES / "camera.tif"
PAGES = EXAMPLES / "pages.tif"
SELECTION = ["-f", "Make", "-f", "DigitalCamera.InteroperabilityIFD.InteroperabilityIndex",
             "-f", "GPSInfo.GPSLatitude"]


def test_fields_are_selected_from_records(veltrace):
    run = veltrace("--ndjson", *SELECTION, CAMERA)
    assert (run.returncode, run.stderr) == (0, b"")
    assert check_record(run.stdout)["info"] == [{
        "Make": "Sample\0",
        "DigitalCamera": [{"InteroperabilityIFD": [{"InteroperabilityIndex": "R98\0"}]}],
        "GPSInfo": [{"GPSLatitude": [48, 51, 29.88]}]}]


def test_fields_are_selected_from_text(veltrace):
    run = veltrace(*SELECTION, CAMERA)
    assert run.stdout.decode().splitlines()[1:] == [
        "  Directory", "    Make  Sample", "    DigitalCamera", "      InteroperabilityIFD",
        "        InteroperabilityIndex  R98", "    GPSInfo",
        "      GPSLatitude  48° 51' 29.88\" N"]


def test_fields_are_the_columns_of_csv(veltrace):
    run = veltrace("--format", "csv", *SELECTION, CAMERA, PAGES, "gone.tif")
    assert run.returncode == 1
    header, camera, pages, gone = csv.reader(io.StringIO(run.stdout.decode()))
    assert header == ["path", "status", "error", "warnings", "directories", *SELECTION[1::2]]
    assert camera == [str(CAMERA), "ok", "", "0", "1", "Sample", "R98", "48 51 29.88"]
    assert pages == [str(PAGES), "ok", "", "0", "3", "", "", ""]
    assert gone == ["gone.tif", "unreadable", "ZEPHRA:veltrace:badFilename", "0", "0", "", "", ""]


def test_a_field_goes_into_every_directory(veltrace):
    run = veltrace("--json", "-f", "Width", PAGES)
    assert json.loads(run.stdout)[0]["info"] == [{"Width": 10}, {"Width": 20}, {"Width": 30}]


def test_a_directory_is_selected_whole(veltrace):
    run = veltrace("--ndjson", "-f", "GPSInfo", CAMERA)
    (directory,) = check_record(run.stdout)["info"]
    assert list(directory) == ["GPSInfo"]
    assert directory["GPSInfo"][0]["GPSTimeStamp"] == [11, 30, 15]


def test_a_field_that_no_file_has_is_reported_once_at_the_end(veltrace):
    for arguments in [[], ["--ndjson"], ["--json"], ["--format", "csv"]]:
        run = veltrace(*arguments, "-f", "Mkae", "-f", "Make", "-f", "GPSInfo.\x1b", CAMERA, PAGES,
                       PAGES)
        assert run.returncode == 0
        assert run.stderr == (b"veltrace: no file has the field Mkae\n"
                              b"veltrace: no file has the field GPSInfo.\\x1b\n")


def test_text_reports_that_nothing_is_selected(veltrace):
    run = veltrace("-f", "Mkae", PAGES)
    assert run.stdout.decode().splitlines() == [str(PAGES), "  none of the selected fields"]


def test_text_shortens_arrays(veltrace):
    run = veltrace("-f", "FormatSignature", "--max-values", "2", PAGES)
    assert b"FormatSignature  73, 73, ... [1 x 4]\n" in run.stdout
    run = veltrace("-f", "FormatSignature", "--max-values", "4", PAGES)
    assert b"FormatSignature  73, 73, 42, 0\n" in run.stdout
    run = veltrace("--ndjson", "-f", "FormatSignature", "--max-values", "2", PAGES)
    assert check_record(run.stdout)["info"][0] == {"FormatSignature": [73, 73, 42, 0]}


def test_json_omits_large_values_and_lists_them(veltrace, write):
    write("a.tif", image(texts=[(MAKE, b"five\0")]))
    run = veltrace("--ndjson", "--omit-larger-than", "4", "-f", "Make", "-f", "FormatSignature",
                   "a.tif")
    record = check_record(run.stdout)
    assert record["info"] == [{"FormatSignature": [73, 73, 42, 0], "Make": None}]
    assert record["omitted"] == [{"at": "/info/0/Make", "size": [1, 5]}]
    run = veltrace("--ndjson", "--omit-larger-than", "5", "-f", "Make", "a.tif")
    record = check_record(run.stdout)
    assert (record["info"], record["omitted"]) == ([{"Make": "five\0"}], [])
