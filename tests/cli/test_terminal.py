"""Colour, progress and the summary."""

import json
import os
import pty
import re
import select
import subprocess
import time

import pytest
from conftest import VELTRACE
from processes import started
from tiff_bytes import MAKE, broken, image

ENVIRONMENT = {"PATH": os.environ["PATH"], "TERM": "xterm"}


@pytest.fixture
def on_terminal(tmp_path):
    """Runs the command with `streams` on a terminal; returns what the terminal received."""
    try:
        os.close(os.open("/dev/ptmx", os.O_RDWR | os.O_NOCTTY))
    except OSError:
        pytest.skip("there are no terminals here")

    def run(*arguments, streams=("stdout", "stderr"), environment=()):
        ours, theirs = pty.openpty()
        settings = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
        settings |= {stream: theirs for stream in streams}
        with subprocess.Popen([VELTRACE, *arguments], cwd=tmp_path, stdin=subprocess.DEVNULL,
                              env=ENVIRONMENT | dict(environment), **settings) as process:
            os.close(theirs)
            seen = everything_from(ours, process)
        os.close(ours)
        return seen

    return run


def everything_from(terminal, process):
    seen = b""
    until = time.monotonic() + 30
    while time.monotonic() < until:
        if select.select([terminal], [], [], 0.1)[0]:
            try:
                piece = os.read(terminal, 65536)
            except OSError:  # the other end is closed
                return seen
            seen += piece
    process.kill()
    raise AssertionError(f"no end after {seen}")


def test_text_is_coloured_on_a_terminal(on_terminal, write):
    write("a.tif", image())
    assert b"\x1b[" in on_terminal("a.tif", streams=["stdout"])


@pytest.mark.parametrize("arguments, environment", [
    (["--color", "never"], {}), ([], {"NO_COLOR": "1"}), ([], {"TERM": "dumb"}), (["--json"], {}),
    (["--format", "csv", "--color", "always"], {}), (["-o", "out"], {})])
def test_text_is_not_coloured_when_that_is_unwanted(on_terminal, write, arguments, environment):
    write("a.tif", image())
    assert b"\x1b" not in on_terminal(*arguments, "a.tif", environment=environment)


def test_an_empty_no_color_is_ignored(on_terminal, write):
    write("a.tif", image())
    assert b"\x1b[" in on_terminal("a.tif", streams=["stdout"], environment={"NO_COLOR": ""})


def test_text_may_be_coloured_without_a_terminal(veltrace, write):
    write("a.tif", image())
    plain = veltrace("a.tif").stdout
    assert b"\x1b" not in plain
    coloured = veltrace("--color", "always", "a.tif").stdout
    assert coloured != plain
    assert re.sub(rb"\x1b\[[0-9;]*m", b"", coloured) == plain
    assert veltrace("--color", "auto", "a.tif").stdout == plain
    environment = os.environ | {"NO_COLOR": "1"}
    assert veltrace("--color", "always", "a.tif", env=environment).stdout == coloured


def test_progress_is_shown_on_a_terminal_after_a_second(on_terminal, unruly):
    seen = on_terminal("--module", unruly, "--time-limit", "1.5", "-j", "1", "--ndjson", "a.tif",
                       "sleep.tif", streams=["stderr"])
    assert seen.startswith(b"\r\x1b[Kveltrace: 1 of 2 done, 1/s, 0 failed, 0:01 left")
    assert seen.endswith(b"\r\n")
    last = seen.rpartition(b"\x1b[K")[2].decode()
    assert re.fullmatch(r"veltrace: 2 files: 1 ok, 0 warned, 1 limit-time; [0-9.]+ files/s\r\n",
                        last)


def test_progress_is_cleared_before_records_on_its_terminal(on_terminal, unruly):
    seen = on_terminal("--module", unruly, "--time-limit", "1.5", "-j", "1", "--ndjson",
                       "--color", "never", "sleep.tif", "a.tif")
    assert b"\r\x1b[K{\"v\":1,\"seq\":0," in seen


def test_no_progress_is_shown_in_a_short_run_or_when_unwanted(on_terminal, unruly):
    assert on_terminal("--module", unruly, "a.tif", streams=["stderr"]) == b""
    assert on_terminal("--module", unruly, "--time-limit", "1.2", "--no-progress", "--ndjson",
                       "sleep.tif", streams=["stderr"]) == b""


def test_progress_may_be_shown_without_a_terminal(unruly):
    arguments = ["--module", unruly, "--time-limit", "1.2", "--ndjson", "sleep.tif"]
    with started(*arguments) as without, started("--progress", *arguments) as run:
        assert b"veltrace: 0 of 1 done, 0/s, 0 failed" in run.stderr.read()
        assert without.stderr.read() == b""


def test_the_summary_counts_every_outcome(veltrace, write, tmp_path):
    run = veltrace("--summary", "sum.json", write("a.tif", image()),
                   write("b.tif", image(broken(MAKE))), write("c.txt", b"text"), "gone.tif", ".")
    assert run.returncode == 1
    summary = json.loads((tmp_path / "sum.json").read_bytes())
    assert list(summary) == ["files", "ok", "warned", "error", "limit-memory", "limit-time",
                             "crashed", "unreadable", "seconds", "files_per_second"]
    assert [summary[name] for name in list(summary)[:8]] == [5, 1, 1, 1, 0, 0, 0, 2]
    assert summary["seconds"] > 0
    assert summary["files_per_second"] == pytest.approx(5 / summary["seconds"])
