"""What the run does when its workers, its output or its surroundings are not as they should be."""

import json
import os
import signal
import subprocess
import time

import pytest
from conftest import VELTRACE
from tiff_bytes import MAKE, MODEL, broken, image

UNRULY = os.environ["VELTRACE_UNRULY"]


def records(output):
    return [json.loads(line) for line in output.splitlines()]


def test_memory_that_is_short_anywhere_is_told_as_such(veltrace, write, limits_memory):
    if not limits_memory:
        pytest.skip("the memory limit does not hold in this build")
    write("a.tif", image(texts=[(MAKE, b"x" * 3_000_000)]))
    statuses = set()
    for mebibytes in range(1, 40, 2):
        run = veltrace("--ndjson", "--memory-limit", f"{mebibytes}M", "a.tif")
        statuses |= {record["status"] for record in records(run.stdout)}
    assert statuses <= {"ok", "warned", "limit-memory"}
    assert {"ok", "limit-memory"} <= statuses


def ignore_children():
    signal.signal(signal.SIGCHLD, signal.SIG_IGN)


def test_how_workers_end_is_known_also_when_the_caller_ignores_its_children(veltrace, write):
    run = veltrace("--module", UNRULY, "--ndjson", write("kill", b""), write("stop", b""),
                   preexec_fn=ignore_children)
    crashed = {record["path"]: record["error"]["text"] for record in records(run.stdout)}
    assert "by signal 9 (Killed)" in crashed["kill"]
    assert "when a signal stopped it" in crashed["stop"]


@pytest.mark.parametrize("isolation", ["on", "off"])
def test_a_signal_ends_a_run_whose_output_nobody_reads(write, tmp_path, isolation):
    write("a.tif", image(texts=[(MAKE, b"x" * 1_000_000)]))
    with subprocess.Popen([VELTRACE, "--json", "--isolation", isolation, "a.tif"], cwd=tmp_path,
                          stdout=subprocess.PIPE) as run:
        assert run.stdout.read(1) == b"["
        time.sleep(0.2)  # until the pipe is full
        run.send_signal(signal.SIGTERM)
        assert run.wait(timeout=20) == 128 + signal.SIGTERM


def test_warnings_are_kept_of_a_file_whose_output_is_too_large(veltrace, write):
    write("a.tif", image(broken(MAKE), texts=[(MODEL, b"x" * 5000)]))
    record, = records(veltrace("--ndjson", "--output-limit", "1024", "a.tif").stdout)
    assert (record["status"], record["error"]["id"]) == ("error", "veltrace:outputLimit")
    assert [warning["id"] for warning in record["warnings"]] == ["ZEPHRA:veltrace:badTagFormat"]
    assert record["info"] == []
