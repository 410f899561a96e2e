"""Rows of made-up measurements."""

import pytest

from comparison import batch, bench_readers, growth, in_process


def course(reader, rounds, directories=3, entries=36, refused=0):
    return {"reader": reader, "rounds_ns": rounds, "directories": directories,
            "entries": entries, "values": 0, "refused": refused}


def test_time_in_process_is_for_one_file():
    one = {"set": "classic", "files": 3,
           "readers": [course("veltrace", [30_000, 60_000]), course("libtiff", [90_000, 90_000])]}
    ours, theirs = in_process.rows_of_set("pages classic", one)
    assert ours.rounds == [10, 20]  # microseconds
    assert ours.ratio is None
    assert theirs.rounds == [30, 30]
    assert theirs.ratio.median == pytest.approx(0.5)
    assert (theirs.directories, theirs.entries) == (3, 36)


def test_work_is_unequal_when_the_module_reads_other_amounts_than_the_minimal_reader():
    def sets(entries):
        return [{"set": "classic", "readers": [course("veltrace", []),
                                               course("minimal", [], entries=entries),
                                               course("libtiff", [], entries=99)]}]

    assert not list(bench_readers.unequal_work(sets(36)))
    assert list(bench_readers.unequal_work(sets(35))) == [
        "classic: veltrace read (directories, entries) (3, 36), the minimal reader (3, 35)"]


def test_batch_has_one_worker_against_peers_and_two_against_one():
    rows = batch.rows_of({"veltrace -j 1": [100, 110], "veltrace -j 2": [180, 198],
                          "exiv2": [20, 20]})
    assert [(row.measurement, row.reader) for row in rows] == [
        ("one worker", "veltrace -j 1"), ("one worker", "exiv2"),
        ("two workers", "veltrace -j 2"), ("two workers", "veltrace -j 1")]
    assert rows[1].ratio.median == pytest.approx(5.25)
    assert rows[3].ratio.median == pytest.approx(1.8)


def test_growing_files_are_sorted_by_kind_and_size(tmp_path):
    for name in ["wide-30.tif", "values-short-ii-10.tif", "wide-4000.tif", "wide-300.tif"]:
        (tmp_path / name).touch()
    sizes = {kind: [size for size, _ in files]
             for kind, files in growth.kinds_of(tmp_path).items()}
    assert sizes == {"values-short-ii": [10], "wide": [30, 300, 4000]}


def test_time_of_growth_is_for_one_item():
    courses = {"veltrace": course("veltrace", [2_000_000]),
               "libtiff": course("libtiff", [8_000_000])}
    ours, theirs = growth.time_rows("chain", 1000, courses)
    assert (ours.measurement, ours.unit, ours.rounds) == ("chain-1000 time", "us/directory", [2])
    assert theirs.ratio.median == 0.25


def test_little_memory_is_not_told_because_it_is_counted_in_steps():
    peaks = {"veltrace": [4 << 20, 4 << 20], "libtiff": [1 << 19, 1 << 19]}
    rows = list(growth.memory_rows("values-short-ii", 1 << 20, peaks))
    assert [(row.reader, row.unit, row.rounds) for row in rows] == [
        ("veltrace", "bytes/value", [4, 4])]


def test_power_compares_the_two_largest_files():
    courses = {size: {"veltrace": course("veltrace", [time])}
               for size, time in [(1, 999), (100, 5_000), (1000, 50_000)]}
    peaks = {100: {"veltrace": [2 << 20]}, 1000: {"veltrace": [200 << 20]}}
    time, memory = growth.power_rows("wide", courses, peaks)
    assert time.measurement == "wide time, 100 to 1000"
    assert time.rounds == pytest.approx([1])
    assert memory.rounds == pytest.approx([2])


def test_one_file_has_no_power():
    assert not list(growth.power_rows("wide", {1: {"veltrace": course("veltrace", [9])}}, {}))
