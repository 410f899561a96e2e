"""Whatever a module does, each file has one record and no other file is affected."""

import os
import re

import pytest
from processes import check_no_process_is_left, sandbox
from run_records import record_lines, records_of, status_of

UNRULY = os.environ["VELTRACE_UNRULY"]
FORMATS = ["text", "json", "ndjson", "csv"]
GOOD = [f"good-{number}.tif" for number in range(40)]
MEMORY_IS_LIMITED = "memory limit" in sandbox()
# AddressSanitizer turns faults into an exit.
FAULT = r"by signal 11 \(Segmentation fault\)" if MEMORY_IS_LIMITED else "with exit status 1"

INVALID = "after it sent an invalid answer: "
WRONG_FORMAT = INVALID + "its output does not have the format"

# How the reader of such a file ends. The number after the dot is the id of the request.
ENDS = {
    "garbage": INVALID + "a frame is larger than allowed",
    "huge-frame": INVALID + "a frame is larger than allowed",
    "wrong-id": INVALID + "its answer does not match its oldest request",
    "half-frame": "with exit status 0",
    # It is killed unless it ends by itself before.
    "close-pipe": r"(by signal 9 \(Killed\)|with exit status 0)",
    "exit0": "with exit status 0",
    "exit7": "with exit status 7",
    "abort": r"by signal 6 \(Aborted\)",
    "segv": FAULT,
    "kill": r"by signal 9 \(Killed\)",
    "stop": "when a signal stopped it",
    "overflow": FAULT,
    "broken-json.1": WRONG_FORMAT,
    "no-array.1": WRONG_FORMAT,
    "escape-in-json.1": WRONG_FORMAT,
    "escape-in-text.1": WRONG_FORMAT,
    "new-line-in-json.1": WRONG_FORMAT,
    "second-record.1": WRONG_FORMAT,
    "wrong-list.1": WRONG_FORMAT,
    "cells.1": WRONG_FORMAT,
    "unknown-field.1": WRONG_FORMAT,
    "unknown-status.1": INVALID + "a number is out of its range",
    "time-limit-status.1": INVALID + "a worker cannot report this status",
    "endless-warnings.1": INVALID + "a number is out of its range",
    "endless-cells.1": INVALID + "a number is out of its range",
    "large-cell.1": INVALID + "the bytes end within a value",
    "endless-fields.1": INVALID + "a number is out of its range",
}
# These only break csv: a worker sends other cells than a row has.
CELLS = ["few-cells.1", "many-cells.1", "no-count.1", "escape-in-cell.1", "line-in-cell.1",
         "body-and-cells.1"]
SLOW = ["sleep", "spin", "trickle.1"]
# These do no harm.
QUIRKS = ["leak", "stdout", "close-requests"]
REFUSED = ["fork", "create", "kill-parent", "kill-all"]


@pytest.fixture
def unruly(veltrace, tmp_path):
    """Runs the command with the module; asserts that nothing is left behind."""

    def run(*arguments, time_limit=30):
        before = os.listdir(tmp_path)
        result = veltrace("--module", UNRULY, "--time-limit", str(time_limit), "--memory-limit",
                          "128M", *arguments)
        check_no_process_is_left()
        assert os.listdir(tmp_path) == before
        return result

    return run


@pytest.fixture
def middle(unruly):
    """Runs the command with a file between two good ones; returns the file's record."""

    def run(name, *arguments, **limits):
        result = unruly("--ndjson", "--ordered", "--jobs", "1", *arguments, "a.tif", name, "b.tif",
                        **limits)
        first, record, last = records_of(result.stdout)
        for good, path in [(first, "a.tif"), (last, "b.tif")]:
            assert (good["path"], good["status"]) == (path.encode(), "ok")
            assert good["info"] == [{"Name": path}]
        assert record["path"] == name.encode()
        assert result.returncode == (1 if record["error"] else 0)
        return record | {"stderr": result.stderr}

    return run


@pytest.mark.parametrize("sandbox", ["auto", "off"])
@pytest.mark.parametrize("name", ENDS)
def test_a_file_that_crashes_its_reader_twice_fails(middle, name, sandbox, limits_memory):
    record = middle(name, "--sandbox", sandbox)
    assert status_of(record) == ("crashed", "veltrace:crashed")
    # The sandbox stops the search for leaks in which a worker with AddressSanitizer ends.
    ended = ENDS[name] if limits_memory else ENDS[name].replace("exit status 0", "exit status [01]")
    assert re.fullmatch(f"The process that read the file ended {ended}, and so did the one "
                        r"before\.", record["error"]["text"])
    assert record["info"] == record["warnings"] == []
    assert sandbox == "off" or record["stderr"] == b""


@pytest.mark.parametrize("name", CELLS + ["endless-cells.1", "large-cell.1"])
def test_cells_that_do_not_fit_the_row_are_rejected(unruly, name):
    run = unruly("--format", "csv", "-f", "Name", "-f", "Make", "--jobs", "1", "a.tif", name, "b.tif")
    header, first, crashed, last = run.stdout.splitlines()
    assert header == b"path,status,error,warnings,directories,Name,Make"
    assert (first, last) == (b"a.tif,ok,,0,1,a.tif,", b"b.tif,ok,,0,1,b.tif,")
    assert crashed == name.encode() + b",crashed,veltrace:crashed,0,0,,"
    assert INVALID.encode() in run.stderr


def test_cells_are_escaped_when_they_are_written(unruly):
    run = unruly("--format", "csv", "-f", "Name", "-f", "Make", "--jobs", "1", "a.tif", "formula.1")
    assert run.stdout.splitlines()[2] == b"formula.1,ok,,0,1,'=1+1,\"a,\"\"b\"\"\""


@pytest.mark.parametrize("sandbox", ["auto", "off"])
@pytest.mark.parametrize("name", SLOW)
def test_an_endless_read_ends_at_the_time_limit(middle, name, sandbox):
    record = middle(name, "--sandbox", sandbox, time_limit=0.4)
    assert status_of(record) == ("limit-time", "veltrace:timeLimit")
    assert record["error"]["text"] == "The file was not read within 0.4 s."
    assert record["elapsed_us"] == 400_000


@pytest.mark.skipif(not MEMORY_IS_LIMITED, reason="the memory limit does not hold in this build")
@pytest.mark.parametrize("sandbox", ["auto", "off"])
def test_a_read_that_takes_all_memory_ends(middle, sandbox):
    assert middle("allocate", "--sandbox", sandbox)["status"] == "limit-memory"


@pytest.mark.skipif(not MEMORY_IS_LIMITED or "seccomp" not in sandbox(),
                    reason="nothing keeps the process from taking all memory")
def test_limits_cannot_be_raised(middle):
    assert middle("raise-limits")["status"] == "limit-memory"


@pytest.mark.parametrize("sandbox", ["auto", "off"])
@pytest.mark.parametrize("name", QUIRKS)
def test_harmless_misbehaviour_is_ignored(middle, name, sandbox):
    record = middle(name, "--sandbox", sandbox)
    assert (record["status"], record["info"]) == ("ok", [{"Name": name}])
    assert record["stderr"] == b""


@pytest.mark.skipif("seccomp" not in sandbox(), reason="the kernel has no seccomp")
@pytest.mark.parametrize("name", REFUSED)
def test_a_worker_can_only_read(middle, name):
    record = middle(name)
    assert (record["status"], record["info"]) == ("ok", [{"Name": name}])


def test_standard_error_of_a_worker_is_shown_only_without_the_sandbox(middle):
    assert middle("stderr")["stderr"] == b""
    assert middle("stderr", "--sandbox", "off")["stderr"] == b"noise\n"


@pytest.mark.parametrize("isolation", ["on", "off"])
def test_an_error_is_in_the_record_of_its_file(middle, write, isolation):
    record = middle(write("error", b""), "--isolation", isolation)
    assert record["status"] == "error"
    assert record["error"] == {"id": "ZEPHRA:unruly:error", "text": "as asked"}


def test_an_exception_is_an_error_of_its_file(middle, write):
    record = middle(write("throw", b""))
    assert record["status"] == "error"


def test_many_warnings_are_counted(middle):
    record = middle("warn")
    assert (record["status"], record["warnings_dropped"]) == ("warned", 234)
    assert [warning["text"] for warning in record["warnings"]] == [
        f"warning {number}" for number in range(1000)]


@pytest.mark.parametrize("name", ["forged.1", "pieces.1"])
def test_a_valid_answer_counts_whatever_follows(middle, name):
    record = middle(name)
    assert record["status"] == "error"
    assert record["error"] == {"id": "forged\x1b[2J", "text": b"\r\nveltrace: nothing\xff\x9b"}


@pytest.mark.parametrize("form", ["text", "csv"])
def test_forged_messages_do_not_reach_a_terminal(unruly, form):
    run = unruly("--format", form, "forged.0")
    assert run.stderr == (rb"veltrace: forged.0: error: \r\nveltrace: nothing\xff\x9b "
                          rb"[forged\x1b[2J]" + b"\n")
    assert (b"\x1b" in run.stdout, run.returncode) == (False, 1)


def mixed(hostile):
    """Good files with a hostile one after every other, which gets the id of its request."""
    names = []
    for number, good in enumerate(GOOD):
        names.append(good)
        if number % 2 == 0 and number // 2 < len(hostile):
            names.append(f"{hostile[number // 2].split('.')[0]}.{len(names)}")
    assert len(names) == len(GOOD) + len(hostile)
    return names


HOSTILE = [name for name in ENDS if "new-line" not in name][:18] + ["sleep", "forged"]


@pytest.mark.parametrize("jobs", [1, 2, 8])
def test_other_files_are_not_affected(unruly, jobs):
    names = mixed(HOSTILE)
    run = unruly("--ndjson", "--jobs", str(jobs), *names, time_limit=0.5)
    records = records_of(run.stdout)
    assert sorted(record["seq"] for record in records) == list(range(len(names)))
    assert {record["seq"]: record["path"].decode() for record in records} == dict(enumerate(names))
    statuses = {record["path"].decode().split(".")[0]: record["status"] for record in records}
    expected = dict.fromkeys((name.split(".")[0] for name in HOSTILE), "crashed")
    expected |= {"sleep": "limit-time", "forged": "error"}
    expected |= dict.fromkeys((name.split(".")[0] for name in GOOD), "ok")
    assert statuses == expected
    alone = record_lines(unruly("--ndjson", *GOOD).stdout)
    among = record_lines(run.stdout)
    assert alone.items() <= among.items()
    assert len(among) == len(names)


@pytest.mark.parametrize("name", ["stop", "exit0", "garbage"])
def test_processes_that_crash_one_after_the_other_are_replaced(unruly, name):
    names = [f"{name}.{number}" for number in range(60)]
    records = records_of(unruly("--ndjson", "--jobs", "8", *names, "good.tif").stdout)
    assert sorted(record["seq"] for record in records) == list(range(61))
    statuses = {record["path"].decode(): record["status"] for record in records}
    assert statuses == dict.fromkeys(names, "crashed") | {"good.tif": "ok"}


@pytest.mark.parametrize("form", FORMATS)
def test_the_output_of_other_files_is_the_same_in_each_format(unruly, form):
    names = mixed(HOSTILE)
    alone = unruly("--format", form, "--ordered", "--jobs", "2", *GOOD)
    among = unruly("--format", form, "--ordered", "--jobs", "2", *names, time_limit=0.5)
    assert (alone.returncode, among.returncode) == (0, 1)
    if form == "text":
        assert among.stdout == alone.stdout
    elif form == "csv":
        rows = among.stdout.splitlines()
        assert len(rows) == 1 + len(names)
        assert [row for row in rows if not row.startswith(hostile_starts())] == (
            alone.stdout.splitlines())
    else:
        assert list(record_lines(among.stdout)) == [
            b'"path":"%s"' % name.encode() for name in names]
        assert record_lines(alone.stdout).items() <= record_lines(among.stdout).items()


def hostile_starts():
    return tuple(name.split(".")[0].encode() + b"." for name in HOSTILE)
