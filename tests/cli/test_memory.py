"""The command itself takes little memory, however many files it reads."""

import re
import subprocess
import threading

import pytest
from hostile_files import large_array
from processes import check_no_process_is_left, peak_of, sandbox, started
from run_records import records_of
from tiff_bytes import MAKE, image

pytestmark = pytest.mark.skipif("memory limit" not in sandbox(),
                                reason="in this build the allocator keeps what is free")
MAX_MEMORY = 64 << 20  # bytes
MAX_GROWTH = 2 << 20
FEW = 10_000
MANY = 40_000


@pytest.fixture
def listing(tmp_path):
    """A run that takes its names from standard input. While that is open it waits for further
    names, so that its memory can be measured."""
    def start(*arguments):
        return started(*arguments, "--files0-from", "-", cwd=tmp_path, stdin=subprocess.PIPE)

    return start


def feed(run, names, lines):
    """Writes names, and reads that many lines."""
    def write():
        run.stdin.write(b"".join(name.encode() + b"\0" for name in names))
        run.stdin.flush()

    writer = threading.Thread(target=write)
    writer.start()
    output = [run.stdout.readline() for _ in range(lines)]
    assert output[-1] != b""
    writer.join()
    return b"".join(output)


def finish(run):
    """Ends the list, and reads the remaining output."""
    run.stdin.close()
    output = run.stdout.read()
    assert (run.stderr.read(), run.wait(timeout=60)) == (b"", 0)
    check_no_process_is_left()
    return output


@pytest.fixture
def files(write):
    return [write(f"{number}.tif", image(texts=[(MAKE, b"Kiln %d\0" % number)]))
            for number in range(10)]


@pytest.mark.parametrize("form, lines", [("ndjson", 1), ("text", 4)])
def test_further_records_take_no_further_memory(listing, files, form, lines):
    with listing("--format", form, "--ordered", "-f", "Make") as run:
        # The first file of text has no empty line before it.
        output = feed(run, files * (FEW // 10), FEW * lines - (form == "text"))
        before = peak_of(run.pid)
        output += feed(run, files * ((MANY - FEW) // 10), (MANY - FEW) * lines)
        peak = peak_of(run.pid)
        output += finish(run)
    assert peak < before + MAX_GROWTH
    assert peak < MAX_MEMORY
    if form == "ndjson":
        assert len(records_of(output, sample=1000)) == MANY // 1000
    else:
        blocks = [f"{name}\n  Directory\n    Make  Kiln {name[0]}\n" for name in files]
        assert output.decode() == "\n".join(blocks * (MANY // 10))


@pytest.mark.parametrize("form", ["ndjson", "json"])
def test_large_outputs_of_many_processes_take_little_memory(listing, write, form):
    count = 1_300_000
    names = [write(f"{number}.tif", large_array(count, number)) for number in range(8)]
    with listing("--format", form, "--jobs", "8", "-f", "StripOffsets") as run:
        # The last line of json ends with the run.
        output = feed(run, names, len(names))
        peak = peak_of(run.pid)
        output += finish(run)
    assert peak < MAX_MEMORY
    records = [line for line in output.splitlines() if line not in (b"[", b"]")]
    assert sorted(re.search(rb'"path":"([^"]*)"', line)[1].decode() for line in records) == names
    # Each number has seven digits and a comma.
    numbers = ",".join(map(str, range(1_000_000, 1_000_000 + count + len(names)))).encode()
    for line in records:
        start = int(re.search(rb'"path":"([0-9])', line)[1])
        values = numbers[8 * start:8 * (start + count) - 1]
        assert b'"info":[{"StripOffsets":[' + values + b']}],"nonfinite":[],"latin1":[]}' in line
