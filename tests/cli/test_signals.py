"""Signals to the command and to its processes, and outputs that nobody reads."""

import contextlib
import json
import os
import random
import re
import signal
import subprocess
import time

import pytest
from hostile_files import large_array
from processes import (TIMEOUT, await_that, check_no_process_is_left, facts_of, started,
                       workers_of)
from run_records import record_lines, records_of
from tiff_bytes import image

UNRULY = os.environ["VELTRACE_UNRULY"]
BUSY = [f"busy.{number}" for number in range(300)]  # of 10 ms each


def listed(names):
    return b"".join(os.fsencode(name) + b"\0" for name in names)


@pytest.fixture
def unruly(tmp_path):
    """The command with the module, while it runs."""

    def run(*arguments, **settings):
        return started("--module", UNRULY, *arguments, cwd=tmp_path, **settings)

    return run


@pytest.fixture
def unfinished(unruly):
    """A run that reads some files, then one for a long time, and would wait for more names."""

    @contextlib.contextmanager
    def run(*arguments, count=40):
        with unruly("--jobs", "3", "--time-limit", "100", *arguments, "--files0-from", "-",
                    stdin=subprocess.PIPE) as process:
            process.stdin.write(listed(BUSY[:count] + ["spin"]))
            process.stdin.flush()
            yield process

    return run


def age_of(pid):
    """Seconds since the start of the process."""
    with open(f"/proc/{pid}/stat", encoding="latin-1") as stat:
        started_at = int(re.sub(r"^.*\) ", "", stat.read(), flags=re.DOTALL).split()[19])
    with open("/proc/uptime", encoding="ascii") as uptime:
        return float(uptime.read().split()[0]) - started_at / os.sysconf("SC_CLK_TCK")


def hit_workers(run, signals, generator):
    """Sends signals to workers until the run ends; returns their number. Young workers are spared:
    their file may have crashed one already."""
    hits = 0
    while run.poll() is None:
        time.sleep(0.05)
        try:
            grown = [pid for pid in workers_of(run.pid) if age_of(pid) > 0.3]
            if grown:
                os.kill(generator.choice(grown), generator.choice(signals))
                hits += 1
        except (FileNotFoundError, ProcessLookupError):
            pass
    return hits


@pytest.mark.parametrize("signals", [[signal.SIGKILL], [signal.SIGSTOP],
                                     [signal.SIGKILL, signal.SIGSEGV, signal.SIGSTOP]])
def test_killed_workers_are_replaced(unruly, tmp_path, signals):
    (tmp_path / "names").write_bytes(listed(BUSY))
    arguments = ["--ndjson", "--jobs", "3", "--files0-from", "names"]
    with open(tmp_path / "out", "wb") as out, unruly(*arguments, stdout=out) as run:
        hits = hit_workers(run, signals, random.Random(7))
        assert run.stderr.read() == b""
    output = (tmp_path / "out").read_bytes()
    check_no_process_is_left()
    records = records_of(output)
    assert {record["seq"]: record["path"].decode() for record in records} == dict(enumerate(BUSY))
    crashed = [record for record in records if record["status"] == "crashed"]
    # A file fails after two hits, and two are rare.
    assert hits >= 3 and 2 * len(crashed) < hits
    assert {record["status"] for record in records} <= {"ok", "crashed"}
    assert all(record["info"] == [{"Name": record["path"].decode()}] for record in records
               if record["status"] == "ok")


@pytest.mark.parametrize("which", [signal.SIGINT, signal.SIGTERM, signal.SIGHUP])
@pytest.mark.parametrize("form", ["ndjson", "json", "text", "csv"])
def test_an_interruption_keeps_complete_records(unfinished, tmp_path, form, which):
    with unfinished("--format", form) as run:
        output = b""
        while b"busy.39" not in output:
            piece = os.read(run.stdout.fileno(), 1 << 16)
            assert piece
            output += piece
        run.send_signal(which)
        rest, error = run.communicate(timeout=TIMEOUT)
    output += rest
    assert (run.returncode, error) == (128 + which, b"")
    check_no_process_is_left()
    assert os.listdir(tmp_path) == []
    if form == "ndjson":
        assert {record["path"].decode() for record in records_of(output)} <= set(BUSY[:40])
    elif form == "json":
        assert [record["path"] for record in json.loads(output)] == BUSY[:40]
    elif form == "csv":
        assert [row.split(b",")[0].decode() for row in output.splitlines()[1:]] == BUSY[:40]
    else:
        assert re.findall(rb"^\S+", output, re.MULTILINE) == [name.encode() for name in BUSY[:40]]


def has_written(pid, directory):
    """Whether the process has bytes in a file of the directory that may have no name yet."""
    for number in os.listdir(f"/proc/{pid}/fd"):
        link = f"/proc/{pid}/fd/{number}"
        try:
            if os.readlink(link).startswith(f"{directory}/") and os.stat(link).st_size > 0:
                return True
        except FileNotFoundError:
            pass
    return False


@pytest.mark.parametrize("which", [signal.SIGINT, signal.SIGTERM])
def test_an_interruption_leaves_the_output_file_as_it_was(unfinished, tmp_path, which):
    (tmp_path / "out").write_bytes(b"as it was")
    with unfinished("--json", "-o", "out") as run:
        await_that(lambda: has_written(run.pid, tmp_path))
        run.send_signal(which)
        output, error = run.communicate(timeout=TIMEOUT)
    assert (run.returncode, output, error) == (128 + which, b"", b"")
    check_no_process_is_left()
    assert sorted(os.listdir(tmp_path)) == ["out", "out.partial"]
    assert (tmp_path / "out").read_bytes() == b"as it was"
    paths = [record["path"] for record in json.loads((tmp_path / "out.partial").read_bytes())]
    assert paths and paths == BUSY[:len(paths)]


def test_an_interruption_before_any_record_leaves_nothing(unfinished, tmp_path):
    with unfinished("--json", "-o", "out", count=0) as run:
        await_that(lambda: workers_of(run.pid))
        run.send_signal(signal.SIGTERM)
        run.communicate(timeout=TIMEOUT)
    assert run.returncode == 128 + signal.SIGTERM
    check_no_process_is_left()
    assert os.listdir(tmp_path) == []


@pytest.mark.parametrize("sandbox", ["auto", "off"])
def test_a_command_that_is_killed_leaves_nothing(unfinished, tmp_path, sandbox):
    with unfinished("--ndjson", "-o", "out", "--sandbox", sandbox) as run:
        await_that(lambda: has_written(run.pid, tmp_path) and len(workers_of(run.pid)) == 3)
        run.kill()
        run.wait(TIMEOUT)
    check_no_process_is_left()
    assert os.listdir(tmp_path) == []


def test_a_command_that_is_killed_ends_the_walk_of_directories(unruly, write, tmp_path):
    for number in range(3000):
        write(f"{number:04}{'x' * 240}.tif", image())
    write("spin.tif", image())
    names = set(os.listdir(tmp_path))
    with unruly("--ndjson", "-r", ".", stdout=subprocess.PIPE) as run:
        assert run.stdout.readline()  # and no more: the run comes to a halt
        run.kill()
        run.wait(TIMEOUT)
    check_no_process_is_left()
    assert set(os.listdir(tmp_path)) == names


@pytest.mark.parametrize("order", ["--ordered", "--no-ordered"])
def test_a_slow_reader_does_not_use_up_the_time_limit(veltrace, write, tmp_path, order):
    names = [write(f"{number}.tif", large_array(60_000, number)) for number in range(12)]
    with started("--ndjson", "--jobs", "4", "--time-limit", "0.5", order, *names,
                 cwd=tmp_path) as run:
        output = b""
        for _ in range(2):
            time.sleep(0.8)
            output += os.read(run.stdout.fileno(), 1 << 16)
        rest, error = run.communicate(timeout=TIMEOUT)
    assert (run.returncode, error) == (0, b"")
    assert record_lines(output + rest) == record_lines(veltrace("--ndjson", *names).stdout)


@pytest.mark.parametrize("names", [BUSY[:100], ["large-late.0", *BUSY[1:20]]])
def test_a_stop_of_the_command_does_not_use_up_the_time_limit(unruly, tmp_path, names):
    with unruly("--ndjson", "--jobs", "2", "--time-limit", "0.8", *names,
                stdout=subprocess.PIPE) as run:
        await_that(lambda: workers_of(run.pid))
        time.sleep(0.2)
        run.send_signal(signal.SIGSTOP)
        await_that(lambda: facts_of(run.pid)[0] == "T")
        time.sleep(1.6)  # twice the limit
        run.send_signal(signal.SIGCONT)
        output, error = run.communicate(timeout=TIMEOUT)
    assert (run.returncode, error) == (0, b"")
    records = records_of(output)
    assert sorted(record["path"].decode() for record in records) == sorted(names)
    assert {record["status"] for record in records} == {"ok"}
    check_no_process_is_left()
