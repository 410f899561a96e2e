"""The command takes little memory itself, however much it has to do."""

import json
import re
import subprocess
import threading

import pytest
from hostile_files import large_array
from processes import check_no_process_is_left, sandbox, started
from run_records import records_of
from tiff_bytes import MAKE, image

pytestmark = pytest.mark.skipif("memory limit" not in sandbox(),
                                reason="in this build the allocator keeps what is free")
MOST = 64 << 20  # bytes
COUNT = 100_000


def peak_of(pid):
    with open(f"/proc/{pid}/status", encoding="ascii") as status:
        return int(re.search(r"^VmHWM:\s+([0-9]+) kB$", status.read(), re.MULTILINE)[1]) << 10


def output_and_peak(run, names, lines):
    """Hands names over, and reads that many lines. The command waits for further names then, so
    that it is still there to be asked."""
    def feed():
        run.stdin.write(names)
        run.stdin.flush()

    feeder = threading.Thread(target=feed)
    feeder.start()
    output = [run.stdout.readline() for _ in range(lines)]
    assert output[-1] != b""
    feeder.join()
    peak = peak_of(run.pid)
    run.stdin.close()
    output += run.stdout.readlines()
    assert (run.stderr.read(), run.wait(timeout=60)) == (b"", 0)
    check_no_process_is_left()
    return b"".join(output), peak


@pytest.fixture
def few(write):
    return [write(f"{number}.tif", image(texts=[(MAKE, b"Kiln %d\0" % number)]))
            for number in range(10)]


def listed(names):
    return b"".join(name.encode() + b"\0" for name in names)


def test_a_hundred_thousand_records_take_little_memory(few, tmp_path):
    with started("--ndjson", "--ordered", "-f", "Make", "--files0-from", "-", cwd=tmp_path,
                 stdin=subprocess.PIPE) as run:
        output, peak = output_and_peak(run, listed(few) * (COUNT // len(few)), lines=COUNT)
    assert peak < MOST
    assert len(records_of(output, sample=1000)) == COUNT // 1000


def test_a_hundred_thousand_texts_take_little_memory(few, tmp_path):
    blocks = [f"{name}\n  Directory\n    Make  Kiln {name[0]}\n" for name in few]
    expected = "\n".join(blocks * (COUNT // len(few)))
    with started("-f", "Make", "--files0-from", "-", cwd=tmp_path, stdin=subprocess.PIPE) as run:
        output, peak = output_and_peak(run, listed(few) * (COUNT // len(few)),
                                       lines=expected.count("\n"))
    assert peak < MOST
    assert output.decode() == expected


@pytest.mark.parametrize("form", ["ndjson", "json"])
def test_large_outputs_of_many_processes_take_little_memory(write, tmp_path, form):
    count = 1_300_000
    names = [write(f"{number}.tif", large_array(count, number)) for number in range(8)]
    with started("--format", form, "--jobs", "8", "-f", "StripOffsets", "--files0-from", "-",
                 cwd=tmp_path, stdin=subprocess.PIPE) as run:
        # The last line of json is on its way then: it ends with the run.
        output, peak = output_and_peak(run, listed(names), lines=len(names))
    assert peak < MOST
    assert len(output) > len(names) * count * len("1000000,")
    records = json.loads(output) if form == "json" else list(map(json.loads, output.splitlines()))
    assert sorted(record["path"] for record in records) == names
    for record in records:
        start = 1_000_000 + int(record["path"][0])
        assert record["info"] == [{"StripOffsets": list(range(start, start + count))}]
