"""Readers in one process and thread: many small files, and single files that grow."""

import json
import statistics
import tempfile
from pathlib import Path

from comparison.programs import run
from comparison.report import median, powers, quartiles, ratios

EXAMPLES = Path(__file__).resolve().parents[2] / "examples"
MAX_RATIO_TO_MINIMAL = 2.0
# What no longer fits into the caches passes for a little growth; quadratic would be 2.
MAX_POWER = 1.25
GROWING_READERS = ["veltrace", "minimal", "libtiff"]
PROCESSES = 3  # that memory is measured in
# The system counts memory in steps. Less than this means little.
MIN_BYTES = 1 << 20


def small_files(bench, report):
    """Microseconds of each reader for a file of each set."""
    sets = {"examples": EXAMPLES}
    sets |= {folder.name: folder for folder in sorted(bench.small_files().iterdir())}
    sets |= {folder.name: folder for folder in bench.folders}
    rows = []
    for name, folder in sets.items():
        files = [path for path in sorted(folder.rglob("*")) if path.is_file()]
        for one in measure(bench, report, files, bench.effort.rounds, (), bench.effort.files):
            rows += rows_of_set(report, f"{name} {one['set']}", one)
    report.table("In process, one thread: microseconds for a file",
                 ["set", "reader", "median:", "quartiles", "directories:", "entries:", "refused:",
                  "veltrace / it:", "quartiles", "at most"], rows)


def rows_of_set(report, name, one):
    times = {reader["reader"]: [time / 1000 / one["files"] for time in reader["rounds_ns"]]
             for reader in one["readers"]}
    for reader in one["readers"]:
        program = reader["reader"]
        found = [] if program == "veltrace" else ratios(times["veltrace"], times[program])
        target = (report.at_most(MAX_RATIO_TO_MINIMAL, f"{name}, times the minimal reader", found)
                  if program == "minimal" else "")
        yield [name if program == "veltrace" else "", program, median(times[program]),
               quartiles(times[program]), str(reader["directories"]), str(reader["entries"]),
               str(reader["refused"] or ""), median(found) if found else "",
               quartiles(found) if found else "", target]


def measure(bench, report, files, rounds, readers, min_reads):
    """The sets into which the files fall by their formats. A round reads a set of fewer than
    `min_reads` files again and again."""
    with tempfile.NamedTemporaryFile("w", suffix=".list") as names:
        names.writelines(f"{file}\n" for file in files)
        names.flush()
        sets = json.loads(run(bench.build / "bench-readers", "--rounds", rounds,
                              *(["--readers", ",".join(readers)] if readers else []),
                              "--min-reads", min_reads, "--files-from", names.name))
    for one in sets:
        work = {reader["reader"]: (reader["directories"], reader["entries"])
                for reader in one["readers"]}
        if work["veltrace"] != work["minimal"]:
            report.errors.append(
                f"unequal work in {files[0].parent.name} {one['set']}: (directories, entries) "
                f"{work['veltrace']} of veltrace, {work['minimal']} of the minimal reader")
    return sets


class Growth:
    """Time and memory of files of one kind, for each of their items."""

    def __init__(self, kind, item, max_time=None, max_memory=None, max_ratio=None):
        self.kind, self.item = kind, item
        self.max_time, self.max_memory, self.max_ratio = max_time, max_memory, max_ratio

    def __call__(self, bench, report):
        rows = []
        for kind, files in self.files(bench).items():
            rows += self.rows_of_kind(bench, report, kind, files)
        report.table(f"Growth with each {self.item}",
                     ["file", "unit", "veltrace:", "minimal:", "libtiff:", "veltrace / libtiff:",
                      "at most"], rows)

    def files(self, bench):
        """(size, path) of the files of each kind, ascending."""
        kinds = {}
        for path in sorted(bench.growing_files().glob(f"{self.kind}*")):
            kind, _, size = path.stem.rpartition("-")
            kinds.setdefault(kind, []).append((int(size), path))
        return {kind: sorted(files) for kind, files in kinds.items()}

    def rows_of_kind(self, bench, report, kind, files):
        largest = files[-1][0]
        times, peaks = {}, {}
        for size, path in files:
            [one] = measure(bench, report, [path], bench.effort.rounds // 2, GROWING_READERS, 1)
            times[size] = {reader["reader"]: [time / 1000 for time in reader["rounds_ns"]]
                           for reader in one["readers"] if not reader["refused"]}
            yield self.row(report, f"{kind}-{size}", f"us/{self.item}", size, times[size],
                           self.max_time if size == largest else None,
                           self.max_ratio if size == largest else None)
        for size, path in files[-2:]:
            peaks[size] = {reader: [peak_of(bench, path, reader) for _ in range(PROCESSES)]
                           for reader in ("veltrace", "libtiff") if reader in times[size]}
            if is_measurable(peaks[size]):
                yield self.row(report, f"{kind}-{size}", f"bytes/{self.item}", size, peaks[size],
                               self.max_memory if size == largest else None)
        for what, figures in ("time", times), ("memory", peaks):
            sizes = sorted(figures)[-2:]
            if len(sizes) == 2 and (what == "time" or is_measurable(figures[sizes[0]])):
                found = powers(sizes, *(figures[size]["veltrace"] for size in sizes))
                yield [f"{kind}, {sizes[0]} to {sizes[1]}", f"power of {what}", median(found),
                       "", "", "", report.at_most(MAX_POWER, f"{kind}, power of {what}", found)]

    @staticmethod
    def row(report, name, unit, size, figures, limit, max_ratio=None):
        each = {reader: [figure / size for figure in found] for reader, found in figures.items()}
        found = ratios(each["veltrace"], each["libtiff"]) if "libtiff" in each else []
        targets = [report.at_most(limit, f"{name}, {unit}", each["veltrace"])] if limit else []
        if max_ratio:
            targets.append(report.at_most(max_ratio, f"{name}, times libtiff", found))
        return [name, unit, *(median(each[reader]) if reader in each else ""
                              for reader in GROWING_READERS),
                median(found) if found else "", "; ".join(targets)]


def is_measurable(peaks):
    return statistics.median(peaks["veltrace"]) >= MIN_BYTES


def peak_of(bench, file, reader):
    """Bytes by which a process grows when the reader reads the file."""
    return json.loads(run(bench.build / "bench-readers", "--peak", "--readers", reader,
                          "--warm-up", EXAMPLES / "gray.tif", file))["peak_bytes"]
