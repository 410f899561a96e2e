"""What the command does about files, and modules, that take too much or break."""

import resource
import signal

import pytest
from record_checks import check_record
from tiff_bytes import MAKE, broken, image


def record_of(output):
    (line,) = output.splitlines(keepends=True)
    return check_record(line)


def by_path(output):
    return {record["path"]: record for record in
            map(check_record, output.splitlines(keepends=True))}


def endless():
    """A directory that names itself as the next one."""
    return image()[:-4] + b"\x08\0\0\0"


def test_a_chain_without_end_runs_out_of_memory(veltrace, write, limits_memory):
    if not limits_memory:
        pytest.skip("there would be no end of it")
    run = veltrace("--ndjson", "--memory-limit", "32M", write("loop.tif", endless()),
                   write("a.tif", image()))
    assert (run.returncode, run.stderr) == (1, b"")
    records = by_path(run.stdout)
    assert records[b"loop.tif"]["status"] == "limit-memory"
    assert records[b"loop.tif"]["error"]["id"] == "ZEPHRA:veltrace:unknownException"
    assert records[b"loop.tif"]["info"] == []
    assert records[b"a.tif"]["status"] == "ok"


def test_a_file_that_takes_too_long_is_given_up(veltrace, unruly):
    run = veltrace("--ndjson", "--module", unruly, "--time-limit", "0.3", "spin.tif")
    record = record_of(run.stdout)
    assert run.returncode == 1
    assert (record["status"], record["error"]) == ("limit-time", {
        "id": "veltrace:timeLimit", "text": "The file was not read within 0.3 s."})
    assert record["elapsed_us"] == 300_000


@pytest.mark.parametrize("arguments", [["--ndjson"], ["--ndjson", "--isolation", "off"]])
def test_a_file_with_too_much_output_fails(veltrace, write, arguments):
    large = image(texts=[(MAKE, b"x" * 5000)])
    run = veltrace(*arguments, "--output-limit", "4K", write("large.tif", large))
    record = record_of(run.stdout)
    assert run.returncode == 1
    assert (record["status"], record["error"]["id"]) == ("error", "veltrace:outputLimit")
    run = veltrace(*arguments, "--output-limit", "8K", "large.tif")
    assert record_of(run.stdout)["status"] == "ok"


@pytest.mark.parametrize("arguments", [["--ndjson"], ["--format", "csv"], []])
def test_messages_count_up_to_a_thousand(veltrace, unruly, arguments):
    run = veltrace("--module", unruly, *arguments, "warn.tif")
    assert run.returncode == 0
    if "--ndjson" in arguments:
        record = record_of(run.stdout)
        assert [warning["text"] for warning in record["warnings"]] == [
            f"warning {number}" for number in range(1000)]
        assert record["warnings_dropped"] == 234
    else:
        lines = run.stderr.splitlines()
        assert lines[999] == (b"veltrace: warn.tif: warning: warning 999 [ZEPHRA:unruly:often]")
        assert lines[1000:] == [b"veltrace: warn.tif: 234 more warnings"]
    if "csv" in arguments:
        assert run.stdout.splitlines()[1].startswith(b"warn.tif,warned,,1234,1")


@pytest.mark.parametrize("name, how", [
    ("segv.tif", f"by signal {int(signal.SIGSEGV)} (Segmentation fault)"),
    ("abort.tif", f"by signal {int(signal.SIGABRT)} (Aborted)"),
    ("kill.tif", f"by signal {int(signal.SIGKILL)} (Killed)"),
    ("exit0.tif", "with exit status 0"),
    ("exit7.tif", "with exit status 7"),
    ("stop.tif", "when a signal stopped it")])
def test_a_process_that_dies_costs_one_file(veltrace, unruly, name, how, limits_memory):
    if name == "segv.tif" and not limits_memory:
        pytest.skip("AddressSanitizer makes an exit of it")
    run = veltrace("--ndjson", "--module", unruly, "-j", "2", "a.tif", name, "b.tif", "c.tif")
    assert (run.returncode, run.stderr) == (1, b"")
    records = by_path(run.stdout)
    assert len(records) == 4
    crashed = records.pop(name.encode())
    assert (crashed["status"], crashed["error"]) == ("crashed", {
        "id": "veltrace:crashed",
        "text": f"The process that read the file ended {how}, and so did the one before."})
    assert [record["status"] for record in records.values()] == ["ok"] * 3


def test_every_number_of_processes_gives_the_same_records(veltrace, write):
    names = [write(f"{number}.tif", image(*[broken(MAKE)] * (number % 2))) for number in range(50)]
    outputs = []
    for arguments in [["-j", "1"], ["-j", "2"], ["--jobs", "8"], ["--isolation", "off"],
                      ["--sandbox", "off"], ["--isolation", "on", "--sandbox", "auto"]]:
        run = veltrace("--ndjson", "--ordered", *arguments, *names)
        assert (run.returncode, run.stderr) == (0, b"")
        outputs.append([check_record(line) | {"elapsed_us": 0}
                        for line in run.stdout.splitlines(keepends=True)])
    assert len(outputs[0]) == 50
    assert all(output == outputs[0] for output in outputs)


@pytest.mark.parametrize("isolation", ["on", "off"])
def test_an_error_of_the_module_keeps_its_message(veltrace, unruly, isolation, write):
    run = veltrace("--ndjson", "--module", unruly, "--isolation", isolation, write("error.tif", b""))
    record = record_of(run.stdout)
    assert run.returncode == 1
    assert (record["status"], record["error"]) == (
        "error", {"id": "ZEPHRA:unruly:error", "text": "as asked"})


def test_without_processes_there_is_nothing_to_do(veltrace, write, limits_memory):
    if not limits_memory:
        pytest.skip("the sanitizers need descriptors of their own")

    def few_descriptors():
        resource.setrlimit(resource.RLIMIT_NOFILE, (6, 6))

    run = veltrace("--json", write("a.tif", image()), preexec_fn=few_descriptors)
    assert (run.returncode, run.stdout) == (4, b"")
    assert run.stderr == b"veltrace: cannot make a pipe: Too many open files\n"
