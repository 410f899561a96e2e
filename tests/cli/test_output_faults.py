"""Outputs that are full, closed, or read slowly."""

import fcntl
import os
import re
import resource
import signal
import subprocess
import sys
import termios
import time

import pytest
from conftest import VELTRACE
from processes import await_that, check_no_process_is_left, peak_of, sandbox, started
from run_records import records_of
from tiff_bytes import MAKE, broken, image

FORMATS = ["text", "json", "ndjson", "csv"]
FULL = b": No space left on device\n"
CLOSED = 128 + signal.SIGPIPE
LARGE = 300_000  # bytes; no pipe holds as many
MAX_MEMORY = 64 << 20  # bytes

every_format = pytest.mark.parametrize("form", FORMATS)
both_isolations = pytest.mark.parametrize("isolation", ["on", "off"])


@pytest.fixture
def names(write):
    """Files with a large output each."""
    return [write(f"{number}.tif", image(texts=[(MAKE, b"%d" % number * LARGE)]))
            for number in range(4)]


def enough(names, form):
    """Enough files for a large output. Text shortens values."""
    return names * 300 if form == "text" else names


PATHS = {
    "text": rb"^([^ \n].*)$",
    "json": rb'^{"v":1,"seq":[0-9]+,"path":"([^"]*)".*},?$',
    "ndjson": rb'^{"v":1,"seq":[0-9]+,"path":"([^"]*)".*}$',
    "csv": rb"^(?!path,)([^,]*),.*$",
}


def paths_in(output, form):
    """The files with complete lines in an output, in its order."""
    return [path.decode() for path in re.findall(PATHS[form], output, re.MULTILINE)]


def full_device():
    return os.open("/dev/full", os.O_WRONLY)


def pipe_without_reader():
    reading, writing = os.pipe()
    os.close(reading)
    return writing


@both_isolations
@every_format
def test_a_full_output_of_any_format_is_reported(veltrace, names, form, isolation):
    with open("/dev/full", "wb") as full:
        run = veltrace("--format", form, "--isolation", isolation, *names, stdout=full)
    assert (run.returncode, run.stderr) == (3, b"veltrace: cannot write the output" + FULL)
    check_no_process_is_left()


@pytest.mark.parametrize("option", ["-o", "--summary"])
@every_format
def test_a_full_file_of_any_format_is_reported(veltrace, names, form, option):
    run = veltrace("--format", form, option, "/dev/full", *names)
    assert (run.returncode, run.stderr) == (3, b"veltrace: cannot write /dev/full" + FULL)
    # The records are written before the summary.
    assert sorted(paths_in(run.stdout, form)) == (names if option == "--summary" else [])


def limit_file_size():
    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
    resource.setrlimit(resource.RLIMIT_FSIZE, (LARGE, LARGE))


@every_format
def test_an_output_file_that_cannot_grow_leaves_the_old_one(veltrace, write, names, tmp_path, form):
    write("out", b"old")
    before = sorted(os.listdir(tmp_path))
    run = veltrace("--format", form, "-o", "out", *enough(names, form),
                   preexec_fn=limit_file_size)
    assert (run.returncode, run.stderr) == (3, b"veltrace: cannot write out: File too large\n")
    assert (tmp_path / "out").read_bytes() == b"old"
    assert sorted(os.listdir(tmp_path)) == before


@both_isolations
@every_format
@pytest.mark.parametrize("taken", [1, 100_000])
def test_a_reader_that_leaves_within_a_record_ends_the_run_quietly(names, tmp_path, form, isolation,
                                                                   taken):
    with started("--format", form, "--isolation", isolation, *enough(names, form),
                 cwd=tmp_path) as run:
        assert len(run.stdout.read(taken)) == taken
        run.stdout.close()
        assert (run.wait(timeout=60), run.stderr.read()) == (CLOSED, b"")
    check_no_process_is_left()


def test_a_reader_that_leaves_stops_a_run_that_would_not_end(tmp_path, names):
    with started("--ndjson", "--files-from", "-", cwd=tmp_path, stdin=subprocess.PIPE) as run:
        run.stdin.write(names[0].encode() + b"\n")
        run.stdin.flush()
        assert run.stdout.read(1) == b"{"
        run.stdout.close()
        assert (run.wait(timeout=60), run.stderr.read()) == (CLOSED, b"")
    check_no_process_is_left()


@pytest.mark.parametrize("argument", ["0.tif", "--help", "--version", "--schema"])
def test_an_output_without_a_reader_ends_the_run_quietly(veltrace, names, argument):
    assert "0.tif" in names
    writing = pipe_without_reader()
    try:
        run = veltrace(argument, stdout=writing)
    finally:
        os.close(writing)
    assert (run.returncode, run.stderr) == (CLOSED, b"")


@every_format
def test_the_reader_of_a_fifo_may_leave(names, tmp_path, form):
    os.mkfifo(tmp_path / "fifo")
    with started("--format", form, "-o", "fifo", *enough(names, form), cwd=tmp_path) as run:
        with open(tmp_path / "fifo", "rb") as fifo:
            assert len(fifo.read(100)) == 100
        assert run.wait(timeout=60) == CLOSED
        assert (run.stdout.read(), run.stderr.read()) == (b"", b"")
    check_no_process_is_left()


@every_format
def test_a_slow_reader_gets_every_record_of_a_command_that_stays_small(names, tmp_path, form):
    # 72 MB of output, except for text.
    is_measured = "memory limit" in sandbox()
    many = enough(names, form) * (60 if is_measured and form != "text" else 1)
    with started("--format", form, "--jobs", "4", "--files-from", "-", cwd=tmp_path,
                 stdin=subprocess.PIPE) as run:
        run.stdin.write("".join(f"{name}\n" for name in many).encode())
        run.stdin.flush()
        output = []
        for _ in range(50):
            output.append(os.read(run.stdout.fileno(), 1))
            time.sleep(0.01)
        # Then the command waits for further names, so that its memory can be measured.
        output += [run.stdout.readline() for _ in many[2:]]
        peak = peak_of(run.pid)
        run.stdin.close()
        output.append(run.stdout.read())
        assert (run.stderr.read(), run.wait(timeout=60)) == (b"", 0)
    seen = paths_in(b"".join(output), form)
    assert seen == many if form != "ndjson" else sorted(seen) == sorted(many)
    assert not is_measured or peak < MAX_MEMORY
    check_no_process_is_left()


@both_isolations
def test_an_output_that_does_not_wait_for_its_reader_is_whole(names, tmp_path, isolation):
    reading, writing = os.pipe()
    os.set_blocking(writing, False)
    with started("--ndjson", "--isolation", isolation, *names, cwd=tmp_path,
                 stdout=writing) as run:
        os.close(writing)
        with open(reading, "rb") as output:
            time.sleep(0.2)  # until the pipe is full
            records = records_of(output.read())
        assert (run.wait(timeout=60), run.stderr.read()) == (0, b"")
    assert sorted(record["path"] for record in records) == [name.encode() for name in names]


@pytest.mark.parametrize("make", [full_device, pipe_without_reader])
@both_isolations
@every_format
def test_messages_that_cannot_be_written_affect_nothing_else(write, tmp_path, form, isolation, make):
    names = [write("warned.tif", image(broken(MAKE))), "gone.tif", write("ok.tif", image())]
    target = make()
    try:
        run = subprocess.run([VELTRACE, "--format", form, "--isolation", isolation, "--progress",
                              *names], cwd=tmp_path, stdout=subprocess.PIPE, stderr=target,
                             timeout=60, check=False)
    finally:
        os.close(target)
    assert run.returncode == 1
    # Text shows nothing for a missing file.
    shown = [name for name in names if form != "text" or name != "gone.tif"]
    assert sorted(paths_in(run.stdout, form)) == sorted(shown)


@pytest.mark.parametrize("arguments, status", [
    (["--format", "xml", "ok.tif"], 2), (["-o", "gone/out", "ok.tif"], 3), (["gone.tif"], 1),
    (["--module", "gone.so", "ok.tif"], 2)])
def test_the_exit_status_is_right_with_a_full_standard_error(write, tmp_path, arguments, status):
    write("ok.tif", image())
    with open("/dev/full", "wb") as full:
        run = subprocess.run([VELTRACE, *arguments], cwd=tmp_path, stdout=subprocess.DEVNULL,
                             stderr=full, timeout=60, check=False)
    assert run.returncode == status


def unread(pipe):
    return int.from_bytes(fcntl.ioctl(pipe, termios.FIONREAD, bytes(4)), sys.byteorder)


def is_full(pipe):
    """Whether a pipe contains much and, for a fifth of a second, no more."""
    before = unread(pipe)
    time.sleep(0.2)
    return before > 50_000 and unread(pipe) == before


@both_isolations
def test_a_signal_ends_a_run_whose_messages_nobody_reads(write, tmp_path, isolation):
    names = [write("warned.tif", image(*[broken(MAKE)] * 1000))] * 4
    reading, writing = os.pipe()
    try:
        with started("--isolation", isolation, "-o", "out", *names, cwd=tmp_path,
                     stderr=writing) as run:
            await_that(lambda: is_full(reading))
            assert run.poll() is None
            run.send_signal(signal.SIGTERM)
            assert run.wait(timeout=20) == 128 + signal.SIGTERM
    finally:
        os.close(writing)
        os.close(reading)
    check_no_process_is_left()


@both_isolations
def test_a_signal_ends_a_run_whose_output_nobody_reads(write, tmp_path, isolation):
    write("a.tif", image(texts=[(MAKE, b"x" * 1_000_000)]))
    with started("--json", "--isolation", isolation, "a.tif", cwd=tmp_path) as run:
        await_that(lambda: is_full(run.stdout))
        run.send_signal(signal.SIGTERM)
        assert run.wait(timeout=20) == 128 + signal.SIGTERM
