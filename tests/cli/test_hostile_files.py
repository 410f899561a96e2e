"""No file exceeds its limits, and no other file is affected."""

import os
import resource

import pytest
from hostile_files import (ORIENTATION, bad_entries, binary_tree, cycle,
                           endless_at_constant_memory, sparse, sub_chain_cycle)
from processes import check_no_process_is_left, sandbox
from run_records import record_lines, records_of, status_of
from tiff_bytes import HEIGHT, MAKE, WIDTH, directory, image, nested, short

GIBIBYTE = 1 << 30
UNKNOWN_EXCEPTION = "ZEPHRA:veltrace:unknownException"
needs_memory_limit = pytest.mark.skipif("memory limit" not in sandbox(),
                                        reason="the memory limit does not hold in this build")
# Little memory, so that it runs out fast.
LIMITS = ["--memory-limit", "48M", "--time-limit", "60"]
ENDLESS = {
    "self.tif": lambda: cycle(1),
    "cycle-2.tif": lambda: cycle(2),
    "cycle-1000.tif": lambda: cycle(1000),
    "sub-chain.tif": sub_chain_cycle,
    "tree.tif": lambda: binary_tree(28),
}
ODD_NAMES = [
    b"new\nline.tif",
    b"\n",
    b"\x1b[31mred\x1b[0m.tif",
    b"\xff\xfe\x80.tif",
    b"\xc3\x28.tif",
    b"\xed\xa0\x80.tif",
    "line\u2028separator\x85.tif".encode(),
    b"%n%n%s%99999999d.tif",
    b"-leading",
    b"--json",
    b"-",
    b" ",
    b"...",
    b"{}[],:\"\\'.tif",
    b"\x01\x7f\t\r.tif",
    b"L" * 255,
    b"\x1b" * 255,
]


@pytest.fixture
def good(write):
    return [write(f"good-{number}.tif", image(texts=[(MAKE, b"Kiln %d\0" % number)]))
            for number in range(20)]


@pytest.fixture
def read(veltrace, tmp_path):
    """Runs the command; asserts that each name has one record and nothing is left behind."""

    def run(*arguments, names):
        before = sorted(os.listdir(os.fsencode(tmp_path)))
        result = veltrace("--ndjson", *arguments, "--", *names)
        check_no_process_is_left()
        assert sorted(os.listdir(os.fsencode(tmp_path))) == before
        records = records_of(result.stdout)
        assert sorted(record["seq"] for record in records) == list(range(len(names)))
        by_name = {record["path"]: record for record in records}
        assert [by_name[os.fsencode(name)]["seq"] for name in names] == list(range(len(names)))
        return by_name, record_lines(result.stdout)

    return run


@pytest.fixture(params=["2", "8"])
def read_among(read, good, request):
    """Reads good files with a hostile one after each of the first; returns the records by name.
    Asserts that the records of the good ones are the same as without the others."""

    def run(*arguments, names):
        mixed = [name for pair in zip(good, names) for name in pair] + good[len(names):]
        records, lines = read(*arguments, "--jobs", request.param, names=mixed)
        assert read(names=good)[1].items() <= lines.items()
        return records

    return run


@needs_memory_limit
def test_an_endless_file_ends_at_the_memory_limit(write, read_among):
    hostile = [write(name, content()) for name, content in ENDLESS.items()]
    assert len(binary_tree(28)) < 1024
    records = read_among(*LIMITS, names=hostile)
    for name in hostile:
        assert status_of(records[name.encode()]) == ("limit-memory", UNKNOWN_EXCEPTION)


@needs_memory_limit
def test_the_default_memory_limit_is_reached_before_the_default_time_limit(write, read):
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    records, _ = read("--time-limit", "60", names=[write("self.tif", cycle(1))])
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    assert status_of(records[b"self.tif"]) == ("limit-memory", UNKNOWN_EXCEPTION)
    # CPU seconds, as other tests run at the same time.
    assert after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime < 10


def test_an_endless_file_without_memory_ends_at_the_time_limit(write, read_among):
    hostile = [write(f"loop-{number}.tif", endless_at_constant_memory()) for number in range(2)]
    records = read_among("--time-limit", "0.5", names=hostile)
    for name in hostile:
        assert status_of(records[name.encode()]) == ("limit-time", "veltrace:timeLimit")


def test_a_very_deep_or_invalid_file_has_its_record(write, read_among):
    hostile = [write("deep.tif", nested(100_000)), write("bad.tif", bad_entries())]
    records = read_among("--time-limit", "60", names=hostile)
    assert records[b"deep.tif"]["error"]["id"] == UNKNOWN_EXCEPTION
    bad = records[b"bad.tif"]
    assert (bad["status"], len(bad["warnings"]), bad["warnings_dropped"]) == (
        "warned", 1000, 65_535 - 1000)
    assert {warning["id"] for warning in bad["warnings"]} == {"ZEPHRA:veltrace:badTagFormat"}


def test_the_size_of_a_file_does_not_matter(read_among, tmp_path):
    content = directory(short(WIDTH, 5), short(HEIGHT, 7), short(ORIENTATION, 6))
    sparse(tmp_path / "first.tif", content, at=8, size=5 * GIBIBYTE)
    sparse(tmp_path / "last.tif", content, at=2 * GIBIBYTE - 100, size=5 * GIBIBYTE)
    sparse(tmp_path / "far.tif", content, at=4 * GIBIBYTE - 100, size=5 * GIBIBYTE)
    sparse(tmp_path / "empty.tif", b"", at=8, size=5 * GIBIBYTE)
    records = read_among(*LIMITS, names=["first.tif", "last.tif", "far.tif", "empty.tif"])
    for name in (b"first.tif", b"last.tif"):
        assert records[name]["status"] == "ok"
        (found,) = records[name]["info"]
        assert (found["Width"], found["Height"], found["Orientation"], found["FileSize"]) == (
            5, 7, 6, 5 * GIBIBYTE)
    assert status_of(records[b"far.tif"]) == ("error", "ZEPHRA:veltrace:badTiffHeaderIfdOffset")
    assert status_of(records[b"empty.tif"]) == ("error", "ZEPHRA:veltrace:zeroLengthIfdTable")


def test_names_of_any_bytes_are_unchanged_in_records(write, read_among):
    for number, name in enumerate(ODD_NAMES):
        write(name, image(short(ORIENTATION, number % 8 + 1)))
    records = read_among(names=ODD_NAMES)
    for number, name in enumerate(ODD_NAMES):
        assert records[name]["status"] == "ok"
        assert records[name]["info"][0]["Orientation"] == number % 8 + 1


def test_names_of_missing_files_have_their_records(read_among):
    names = [name for name in ODD_NAMES if name != b"..."]
    records = read_among(names=names)
    for name in names:
        assert status_of(records[name]) == ("unreadable", "ZEPHRA:veltrace:badFilename")
