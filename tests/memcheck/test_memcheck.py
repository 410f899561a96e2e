"""Valgrind finds no use of uninitialised memory in the released build.

The sanitized builds find every other misuse of memory in many more files; uninitialised reads are
what only valgrind finds. Files below VELTRACE_MEMCHECK_FILES are read as well.
"""

import itertools
import os
import subprocess
import sys
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
sys.path += [str(ROOT / "tests" / folder) for folder in ("cli", "grid", "reference", "vocabulary")]

import cases  # noqa: E402
import hostile_files  # noqa: E402
import tiff_bytes  # noqa: E402

VELTRACE = Path(os.environ["VELTRACE_BUILD"]) / "veltrace"
MORE_FILES = os.environ.get("VELTRACE_MEMCHECK_FILES")
MISUSE = 99


def hostile_contents():
    return {
        "tree.tif": hostile_files.binary_tree(6),
        "large.tif": hostile_files.large_array(5_000, 0),
        "entries.tif": tiff_bytes.tiff(*[tiff_bytes.broken(274)] * 500),
        "short.tif": tiff_bytes.image()[:-3],
        "beyond.tif": tiff_bytes.image(tiff_bytes.pointer(273, 0xFFFFFFF0)),
        "cut.jpg": (ROOT / "examples" / "photo.jpg").read_bytes()[:200],
        "empty": b"",
    }


def every_tag_and_type():
    """The first file of a few settings of the grid."""
    settings = itertools.product(cases.CONTAINERS, cases.ORDERS, (0, 34853))
    for index, setting in enumerate(settings):
        _, content = next(cases.files(*setting))
        yield f"grid{index}", content


def written(directory):
    for name, content in [*hostile_contents().items(), *every_tag_and_type()]:
        path = directory / name
        path.write_bytes(content)
        yield path


def files_below(directory):
    return [path for path in sorted(Path(directory).rglob("*")) if path.is_file()]


@pytest.mark.parametrize("form", ["ndjson", "text", "csv"])
def test_reading_in_one_process_uses_no_uninitialised_memory(form, tmp_path):
    """One process, as a program cannot start itself anew below valgrind."""
    log = tmp_path / "log"
    files = [*written(tmp_path), *sorted((ROOT / "examples").glob("*.*"))]
    files += files_below(MORE_FILES) if MORE_FILES else []
    result = subprocess.run(
        ["valgrind", "--leak-check=full", "--show-leak-kinds=definite,indirect",
         "--errors-for-leak-kinds=definite,indirect", f"--error-exitcode={MISUSE}",
         f"--log-file={log}", VELTRACE, "--isolation", "off", "--format", form, *files],
        stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=3000, check=False)
    words = log.read_text()
    assert "ERROR SUMMARY: 0 errors" in words and result.returncode != MISUSE, words
    assert result.returncode == 1  # some cannot be read
    assert result.stdout.count(b"\n") >= len(files)
