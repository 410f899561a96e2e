"""What the run does when its workers, its output or its surroundings are not as they should be."""

import json
import os
import resource
import signal
import subprocess
import time

import pytest
from conftest import VELTRACE
from tiff_bytes import MAKE, image

UNRULY = os.environ["VELTRACE_UNRULY"]


def records(output):
    return [json.loads(line) for line in output.splitlines()]


def test_memory_that_is_short_anywhere_is_told_as_such(veltrace, write):
    write("a.tif", image(texts=[(MAKE, b"x" * 3_000_000)]))
    statuses = set()
    for mebibytes in range(1, 40, 2):
        run = veltrace("--ndjson", "--memory-limit", f"{mebibytes}M", "a.tif")
        statuses |= {record["status"] for record in records(run.stdout)}
    assert statuses <= {"ok", "warned", "limit-memory"}
    assert {"ok", "limit-memory"} <= statuses
