"""The command, run on tiny sets."""

import json
import os
import subprocess
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[3]


def compare(*arguments):
    return subprocess.run([ROOT / "bench/compare", "--quick", "--build",
                           os.environ["VELTRACE_BENCH_BUILD"], *arguments],
                          capture_output=True, text=True, check=False)


@pytest.fixture(name="outcome", scope="module")
def outcome_fixture(tmp_path_factory):
    """One run over one more folder: what it printed, and the figures it wrote."""
    folder = tmp_path_factory.mktemp("folder")
    given = folder / "given"
    given.mkdir()
    (given / "gray.tif").write_bytes((ROOT / "examples/gray.tif").read_bytes())
    (given / "notes.txt").write_text("no image")
    figures = folder / "figures.json"
    done = compare("--json", figures, given)
    assert done.returncode == 0, done.stderr
    return done.stdout, json.loads(figures.read_text())


def test_every_section_has_rows_of_its_readers(outcome):
    _, figures = outcome
    found = {(row["section"], row["reader"]) for row in figures["rows"]}
    assert found >= {
        ("in process", "veltrace"), ("in process", "minimal"), ("in process", "bare"),
        ("in process", "libtiff"), ("in process", "libexif"), ("in process", "exiv2"),
        ("whole process", "veltrace"), ("whole process", "tiffdump"),
        ("whole process", "tiffinfo"), ("whole process", "exiv2"), ("whole process", "exiftool"),
        ("batch", "veltrace -j 1"), ("batch", "veltrace -j 2"), ("batch", "one process"),
        ("batch", "exiv2"),
        ("growth", "veltrace"), ("growth", "libtiff")}


def test_folder_is_a_set_of_the_images_in_it(outcome):
    _, figures = outcome
    rows = [row for row in figures["rows"] if row["measurement"].startswith("given")]
    assert {row["measurement"] for row in rows} == {"given classic"}
    assert {row["directories"] for row in rows if row["reader"] != "bare"} == {1}


def test_table_has_a_line_for_every_row_of_the_record(outcome):
    text, figures = outcome
    lines = text.splitlines()
    heading = next(i for i, line in enumerate(lines) if line.startswith("measurement"))
    sections = {row["section"] for row in figures["rows"]}
    assert len(lines) == heading + 2 + len(sections) + len(figures["rows"])


def test_folder_without_files_is_told(tmp_path):
    done = compare(tmp_path)
    assert done.returncode == 1
    assert f"compare: {tmp_path} has no files" in done.stderr
    assert done.stdout == ""
