"""Files that exceed limits, and environments that do."""

import json
import resource
import signal

import pytest
from run_records import records_of
from tiff_bytes import MAKE, MODEL, broken, image


@pytest.mark.parametrize("arguments", [[], ["--isolation", "off"]])
def test_a_file_with_too_much_output_fails(veltrace, write, arguments):
    write("a.tif", image(broken(MAKE), texts=[(MODEL, b"x" * 5000)]))
    run = veltrace("--ndjson", *arguments, "--output-limit", "4K", "a.tif")
    (record,) = records_of(run.stdout)
    assert run.returncode == 1
    assert (record["status"], record["error"]["id"]) == ("error", "veltrace:outputLimit")
    assert [warning["id"] for warning in record["warnings"]] == ["ZEPHRA:veltrace:badTagFormat"]
    run = veltrace("--ndjson", *arguments, "--output-limit", "8K", "a.tif")
    assert records_of(run.stdout)[0]["status"] == "warned"


@pytest.mark.parametrize("arguments", [["--format", "csv"], []])
def test_messages_count_up_to_a_thousand(veltrace, unruly, arguments):
    run = veltrace("--module", unruly, *arguments, "warn.tif")
    assert run.returncode == 0
    lines = run.stderr.splitlines()
    assert lines[999] == b"veltrace: warn.tif: warning: warning 999 [ZEPHRA:unruly:often]"
    assert lines[1000:] == [b"veltrace: warn.tif: 234 more warnings"]
    if "csv" in arguments:
        assert run.stdout.splitlines()[1].startswith(b"warn.tif,warned,,1234,1")


def test_exhausted_memory_is_reported_wherever_it_occurs(veltrace, write, limits_memory):
    if not limits_memory:
        pytest.skip("this build does not limit memory")
    write("a.tif", image(texts=[(MAKE, b"x" * 3_000_000)]))
    statuses = set()
    for mebibytes in range(1, 40, 2):
        run = veltrace("--ndjson", "--memory-limit", f"{mebibytes}M", "a.tif")
        statuses |= {json.loads(line)["status"] for line in run.stdout.splitlines()}
    assert statuses <= {"ok", "warned", "limit-memory"}
    assert {"ok", "limit-memory"} <= statuses


def test_every_number_of_processes_gives_the_same_records(veltrace, write):
    names = [write(f"{number}.tif", image(*[broken(MAKE)] * (number % 2))) for number in range(50)]
    outputs = []
    for arguments in [["-j", "1"], ["-j", "2"], ["--jobs", "8"], ["--isolation", "off"],
                      ["--sandbox", "off"], ["--isolation", "on", "--sandbox", "auto"]]:
        run = veltrace("--ndjson", "--ordered", *arguments, *names)
        assert (run.returncode, run.stderr) == (0, b"")
        outputs.append([record | {"elapsed_us": 0} for record in records_of(run.stdout)])
    assert len(outputs[0]) == 50
    assert all(output == outputs[0] for output in outputs)


def test_without_processes_there_is_nothing_to_do(veltrace, write, limits_memory):
    if not limits_memory:
        pytest.skip("the sanitizers need descriptors of their own")

    def few_descriptors():
        resource.setrlimit(resource.RLIMIT_NOFILE, (6, 6))

    run = veltrace("--json", write("a.tif", image()), preexec_fn=few_descriptors)
    assert (run.returncode, run.stdout) == (4, b"")
    assert run.stderr == b"veltrace: cannot make a pipe: Too many open files\n"


def ignore_children():
    signal.signal(signal.SIGCHLD, signal.SIG_IGN)


def test_crashes_are_reported_when_the_caller_ignores_its_children(veltrace, unruly):
    run = veltrace("--module", unruly, "--ndjson", "kill", "stop", preexec_fn=ignore_children)
    crashed = {record["path"]: record["error"]["text"] for record in records_of(run.stdout)}
    assert "by signal 9 (Killed)" in crashed[b"kill"]
    assert "when a signal stopped it" in crashed[b"stop"]
