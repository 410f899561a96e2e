"""The samples in examples/."""

import json
import pathlib
import re

import pytest

EXAMPLES = pathlib.Path(__file__).resolve().parents[2] / "examples"
SAMPLES = sorted([*EXAMPLES.glob("*.tif"), *EXAMPLES.glob("*.jpg")])


def first_directory(veltrace, name):
    run = veltrace("--json", EXAMPLES / name)
    assert run.returncode == 0
    return json.loads(run.stdout)[0]["info"][0]


def test_every_sample_has_a_row_in_the_readme():
    rows = re.findall(r"^\| `(.*?)`", (EXAMPLES / "README.md").read_text(), re.MULTILINE)
    assert sorted(rows) == [sample.name for sample in SAMPLES]


@pytest.mark.parametrize("sample", SAMPLES, ids=lambda sample: sample.name)
def test_every_sample_is_read(veltrace, sample):
    run = veltrace("--json", sample)
    assert run.returncode == 0
    (file,) = json.loads(run.stdout)
    # BigTIFF encoders store strip offsets in 64 bits, which are rejected entry by entry.
    assert file["status"] == ("warned" if sample.name == "big.tif" else "ok")
    assert len(file["info"]) == (3 if sample.name == "pages.tif" else 1)


@pytest.mark.parametrize("name, field, value", [
    ("gray.tif", "ByteOrder", "little-endian"),
    ("colour.tif", "ByteOrder", "big-endian"),
    ("palette.tif", "ColorType", "indexed"),
    ("tiles.tif", "TileWidth", 16),
    ("big.tif", "FormatSignature", [73, 73, 43, 0]),
    ("fax.tif", "Compression", "Group 4 Fax"),
    ("photo.jpg", "Format", "jpg"),
])
def test_a_sample_has_its_special_field(veltrace, name, field, value):
    assert first_directory(veltrace, name)[field] == value


@pytest.mark.parametrize("name", ["camera.tif", "photo.jpg"])
def test_a_camera_sample_nests_its_directories(veltrace, name):
    directory = first_directory(veltrace, name)
    (exif,) = directory["DigitalCamera"]
    assert exif["ExposureTime"] == 0.008
    assert exif["InteroperabilityIFD"][0]["InteroperabilityIndex"] == "R98\0"
    assert directory["GPSInfo"][0]["GPSTimeStamp"] == [11, 30, 15]


def test_the_photo_has_more_in_each_directory(veltrace):
    directory = first_directory(veltrace, "photo.jpg")
    (exif,) = directory["DigitalCamera"]
    assert exif["UserComment"] == list(b"ASCII\0\0\0A colour ramp")
    assert exif["InteroperabilityIFD"][0]["RelatedImageWidth"] == 32
    assert directory["GPSInfo"][0]["GPSImgDirection"] == 271.25


def test_run_prints_every_sample_when_it_is_given_no_file():
    patterns = re.search(r"set -- (.*)", (EXAMPLES.parent / "scripts/run").read_text()).group(1)
    named = [pattern.rpartition("/")[2] for pattern in patterns.split()]
    assert sorted(path for name in named for path in EXAMPLES.glob(name)) == SAMPLES
