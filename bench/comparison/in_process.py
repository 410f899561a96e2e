"""Readers in one process and thread, over folders of files."""

from comparison import bench_readers
from comparison.figures import Row

SECTION = "in process"


def rows(build, sources, rounds, least_reads):
    """Rows for each format of each source, and sentences on unequal work."""
    result, complaints = [], []
    for source in sources:
        sets = bench_readers.measure(build, source.files, rounds, least_reads=least_reads)
        complaints += [f"{source.name} {text}" for text in bench_readers.unequal_work(sets)]
        for one in sets:
            result += rows_of_set(f"{source.name} {one['set']}", one)
    return result, complaints


def rows_of_set(measurement, one):
    """The first reader is the module."""
    ours = microseconds(one, one["readers"][0])
    for reader in one["readers"]:
        is_ours = reader is one["readers"][0]
        yield Row(SECTION, measurement, reader["reader"], "us/file", microseconds(one, reader),
                  ours=[] if is_ours else ours,
                  directories=reader["directories"], entries=reader["entries"],
                  refused=reader["refused"])


def microseconds(one, reader):
    return [nanoseconds / 1000 / one["files"] for nanoseconds in reader["rounds_ns"]]
