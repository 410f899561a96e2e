"""Time and memory of single files that grow: by directories, entries, values, nesting."""

import re
import statistics

from comparison import bench_readers
from comparison.figures import Row, growth_exponent

SECTION = "growth"
READERS = ["veltrace", "minimal", "libtiff"]
MEMORY_READERS = ["veltrace", "libtiff"]
PROCESSES = 3  # that memory is measured in
FILE_NAME = re.compile(r"(?P<kind>.+)-(?P<size>\d+)\.tif")
ITEMS = {"chain": "directory", "wide": "entry", "nesting": "level", "values": "value"}
# The system counts memory in steps. Less than this says little.
LEAST_BYTES = 1 << 20


def rows(build, folder, warm_up, rounds):
    """Rows for each file of the folder, and sentences on unequal work."""
    result, complaints = [], []
    for kind, files in kinds_of(folder).items():
        courses = {}
        for size, file in files:
            [one] = bench_readers.measure(build, [file], rounds, READERS)
            complaints += [f"{file.name} {text}" for text in bench_readers.unequal_work([one])]
            courses[size] = {reader["reader"]: reader for reader in one["readers"]
                             if not reader["refused"]}
            result += time_rows(kind, size, courses[size])
        peaks = {size: peaks_of(build, file, courses[size], warm_up)
                 for size, file in files[-2:]}
        for size, found in peaks.items():
            result += memory_rows(kind, size, found)
        result += power_rows(kind, courses, peaks)
    return result, complaints


def kinds_of(folder):
    """Sizes and files of each kind, ascending."""
    kinds = {}
    for file in folder.iterdir():
        match = FILE_NAME.fullmatch(file.name)
        kinds.setdefault(match["kind"], []).append((int(match["size"]), file))
    return {kind: sorted(files) for kind, files in sorted(kinds.items())}


def item_of(kind):
    return ITEMS[kind.partition("-")[0]]


def time_rows(kind, size, courses):
    times = {reader: [nanoseconds / 1000 / size for nanoseconds in course["rounds_ns"]]
             for reader, course in courses.items()}
    for reader, course in courses.items():
        yield Row(SECTION, f"{kind}-{size} time", reader, f"us/{item_of(kind)}", times[reader],
                  ours=times["veltrace"] if reader != "veltrace" else [],
                  directories=course["directories"], entries=course["entries"])


def peaks_of(build, file, courses, warm_up):
    return {reader: [bench_readers.peak(build, file, reader, warm_up) for _ in range(PROCESSES)]
            for reader in MEMORY_READERS if reader in courses}


def memory_rows(kind, size, peaks):
    for reader, found in peaks.items():
        if statistics.median(found) >= LEAST_BYTES:
            yield Row(SECTION, f"{kind}-{size} memory", reader, f"bytes/{item_of(kind)}",
                      [peak / size for peak in found])


def power_rows(kind, courses, peaks):
    """How the largest file compares with the one before."""
    if len(courses) < 2:
        return
    small, large = sorted(courses)[-2:]
    times = [courses[size]["veltrace"]["rounds_ns"] for size in (small, large)]
    memory = [peaks[size]["veltrace"] for size in (small, large)]
    yield power_row(f"{kind} time", (small, large), times)
    if statistics.median(memory[0]) >= LEAST_BYTES:
        yield power_row(f"{kind} memory", (small, large), memory)


def power_row(what, sizes, figures):
    exponents = [growth_exponent(sizes[0], small, sizes[1], large)
                 for small, large in zip(*figures, strict=True)]
    return Row(SECTION, f"{what}, {sizes[0]} to {sizes[1]}", "veltrace", "power of size",
               exponents)
