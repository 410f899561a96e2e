"""Valgrind finds no misuse of memory in the released build, and nothing lost.

What the sanitizers check is built into the code; this checks the code that is released. Files for it
are the samples, hostile files, and those below VELTRACE_MEMCHECK_FILES. With VELTRACE_MEMCHECK_FUZZ
the fuzz targets of the build replay their inputs, too, which takes minutes (scripts/prove memcheck).
Files are read in one process: below valgrind a program cannot start itself anew.
"""

import os
import subprocess
import sys
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
sys.path.append(str(ROOT / "tests" / "cli"))

import hostile_files  # noqa: E402
import tiff_bytes  # noqa: E402

BUILD = Path(os.environ["VELTRACE_BUILD"])
MORE_FILES = os.environ.get("VELTRACE_MEMCHECK_FILES")
MISUSE = 99


def memcheck(*command, log, cwd):
    """Runs a command; gives what came of it and valgrind's words."""
    result = subprocess.run(
        ["valgrind", "--leak-check=full", "--show-leak-kinds=definite,indirect",
         "--errors-for-leak-kinds=definite,indirect", f"--error-exitcode={MISUSE}",
         f"--log-file={log}", *command],
        stdout=subprocess.PIPE, stderr=subprocess.PIPE, cwd=cwd, timeout=3000, check=False)
    return result, log.read_text()


def expect_clean(result, words):
    assert "ERROR SUMMARY: 0 errors" in words and result.returncode != MISUSE, words


@pytest.fixture
def log(tmp_path):
    return tmp_path / "log"


@pytest.fixture
def files(tmp_path):
    """Names of samples and hostile files, and of any folder that was asked for."""
    folder = tmp_path / "hostile"
    folder.mkdir()
    hostile = {
        "tree.tif": hostile_files.binary_tree(6),
        "large.tif": hostile_files.large_array(5_000, 0),
        "entries.tif": tiff_bytes.tiff(*[tiff_bytes.broken(274)] * 500),
        "short.tif": tiff_bytes.image()[:-3],
        "beyond.tif": tiff_bytes.image(tiff_bytes.pointer(273, 0xFFFFFFF0)),
        "cut.jpg": (ROOT / "examples" / "photo.jpg").read_bytes()[:200],
        "empty": b"",
    }
    for name, content in hostile.items():
        (folder / name).write_bytes(content)
    more = [str(file) for file in sorted(Path(MORE_FILES).rglob("*"))
            if file.is_file()] if MORE_FILES else []
    samples = [str(file) for file in sorted((ROOT / "examples").glob("*.*"))]
    return [*(str(folder / name) for name in hostile), *samples, *more]


@pytest.mark.parametrize("form", ["ndjson", "text", "csv"])
def test_command_in_one_process(form, files, log, tmp_path):
    result, words = memcheck(BUILD / "veltrace", "--isolation", "off", "--format", form, *files,
                             log=log, cwd=tmp_path)
    expect_clean(result, words)
    assert result.returncode == 1  # some cannot be read
    assert result.stdout.count(b"\n") >= len(files)
    print(f"{len(files)} files as {form}")


def replayed():
    if "VELTRACE_MEMCHECK_FUZZ" not in os.environ:
        return []
    return sorted(archive.stem for archive in (ROOT / "fuzz" / "corpus").glob("*.tar"))


@pytest.mark.parametrize("target", replayed())
def test_inputs_of_the_fuzz_target(target, log, tmp_path):
    folders = [BUILD / "fuzz" / "corpus" / target, ROOT / "fuzz" / "regressions" / target]
    result, words = memcheck(BUILD / f"fuzz-{target}", *filter(Path.is_dir, folders),
                             log=log, cwd=tmp_path)
    expect_clean(result, words)
    assert result.returncode == 0, result.stderr
