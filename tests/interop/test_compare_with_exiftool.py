"""The comparison of a folder: what it finds in files of independent encoders, how it exits."""

import os
import pathlib
import shutil
import subprocess
import sys

import pytest
from compare_with_exiftool import AGREE, REPEATED, compare, jpeg_files
from differences import CLASSES
from jpeg_encoders import JPEG_ENCODERS

HERE = pathlib.Path(__file__).resolve().parent
SCRIPT = HERE / "compare_with_exiftool.py"
EXAMPLE = HERE.parents[1] / "examples" / "photo.jpg"
VELTRACE = os.environ["VELTRACE"]

# What ExifTool adds to a file of Pillow's whenever it writes.
ADDED = {"ResolutionUnit": "word-for-code", "YCbCrPositioning": "word-for-code"}
ADDED_EXIF = {"ExifVersion": "undefined-bytes", "FlashpixVersion": "undefined-bytes"}

EXPECTED = {
    "photo": ADDED | ADDED_EXIF | {
        "UserComment": "encoded-text", "GPSLatitude": "degrees-in-parts",
        "GPSLongitude": "degrees-in-parts", "GPSTimeStamp": "time-in-parts",
        "InteroperabilityVersion": "undefined-bytes"},
    "exposure": ADDED | ADDED_EXIF | {
        "ShutterSpeedValue": "logarithm", "ApertureValue": "logarithm",
        "MaxApertureValue": AGREE,  # Of apertures, 2 is its own logarithm.
        "ExposureTime": "zero-denominator", "FNumber": "zero-denominator",
        42034: "zero-denominator", "UserComment": "encoded-text", "CFAPattern": "colour-filter",
        40091: "wide-text"},
    "position": ADDED | ADDED_EXIF | {
        "UserComment": "encoded-text", "GPSProcessingMethod": "encoded-text",
        "GPSLatitude": "degrees-in-parts", "GPSDestLongitude": "degrees-in-parts",
        "GPSTimeStamp": "time-in-parts", "InteroperabilityVersion": "undefined-bytes"},
    "texts": {"ImageDescription": "no-text", "Make": "padded-text", "Model": "text-after-nul",
              "Artist": "text-not-utf8", "Copyright": "copyright-of-two"},
    "blocks": {"TileOffsets": "position-in-file", 50898: "empty-title", "MakerNote": "block"},
    "split_segment": {"Software": "joined-segments"},
    "cut_off": {"Software": "cut-segment"},
    "offset_beyond": ADDED | ADDED_EXIF | {"FNumber": "beyond-segment"},
    "repeated_tag": ADDED | ADDED_EXIF | {"SubsecTime": REPEATED},
}


@pytest.fixture(scope="module")
def folder(tmp_path_factory):
    folder = tmp_path_factory.mktemp("photos")
    for name, write in JPEG_ENCODERS.items():
        write(folder / f"{name}.jpg")
    (folder / "deeper").mkdir()
    shutil.copy(EXAMPLE, folder / "deeper")
    (folder / "notes.jpg").write_text("no JPEG file")
    return folder


@pytest.fixture(scope="module")
def judgements(folder):
    return compare(list(jpeg_files(folder)), VELTRACE)


def run(veltrace, folder, *options):
    return subprocess.run([sys.executable, SCRIPT, "--veltrace", veltrace, *options, folder],
                          capture_output=True, text=True, timeout=60, check=False)


@pytest.mark.parametrize("name", EXPECTED)
def test_finds_the_differences_that_the_file_was_made_for(name, judgements):
    expected = {tag for tag in EXPECTED[name].items() if tag[1] != AGREE}
    assert expected == {(j.pair.name or j.pair.tag, j.verdict) for j in judgements
                        if j.file.stem == name and j.verdict != AGREE}


def test_the_other_tags_of_the_sample_agree(judgements):
    verdicts = [j.verdict for j in judgements if j.file.stem == "photo"]
    assert len(verdicts) == 7 + 17 + 12 + 4  # First directory, Exif, GPS, Interoperability.
    assert verdicts.count(AGREE) == len(verdicts) - len(EXPECTED["photo"])


def test_every_class_occurs(judgements):
    assert {j.verdict for j in judgements} == {AGREE, REPEATED, *CLASSES}


def test_an_expectation_stands_for_every_file(judgements):
    assert {j.file.stem for j in judgements} == set(EXPECTED)


def test_explained_differences_are_a_success(folder):
    process = run(VELTRACE, folder)
    assert process.stderr == ""
    assert process.returncode == 0
    lines = process.stdout.splitlines()
    assert ("deeper/photo.jpg: GPS GPSTimeStamp (7): time-in-parts: "
            "[11, 30, 15] / '11:30:15'") in lines
    (total,) = [line for line in lines if " JPEG files, " in line]
    assert total.startswith("9 JPEG files, 9 with tags: ")


def test_a_wrong_value_is_a_failure(folder, tmp_path):
    veltrace = tmp_path / "veltrace"
    veltrace.write_text(f'#!/bin/sh\n"{VELTRACE}" "$@" | sed s/271.25/271.5/\n')
    veltrace.chmod(0o755)
    process = run(veltrace, folder, "--summary")
    assert process.returncode == 1
    assert process.stdout.splitlines()[0] == (
        "deeper/photo.jpg: GPS GPSImgDirection (17): NOT EXPLAINED: 271.5 / '271.25'")
    assert "NOT EXPLAINED                1" in process.stdout.splitlines()


def test_a_folder_without_jpeg_files_is_a_failure(tmp_path):
    process = run(VELTRACE, tmp_path)
    assert process.returncode == 1
    assert "no JPEG file" in process.stderr
