"""The command `bench/compare`."""

import argparse
import sys
from dataclasses import dataclass
from pathlib import Path

from comparison import batch, growth, in_process, machine, sources, table, targets, whole_process
from comparison.bench_readers import Failed, run

ROOT = Path(__file__).resolve().parents[2]
EXAMPLES = ROOT / "examples"


@dataclass(frozen=True)
class Effort:
    """How much is measured."""
    files: int
    batch_files: int
    largest: int
    rounds: int
    passes: int  # of hyperfine
    runs: int  # in each pass


FULL = Effort(files=300, batch_files=4000, largest=1_000_000, rounds=15, passes=5, runs=20)
QUICK = Effort(files=5, batch_files=20, largest=300, rounds=3, passes=2, runs=2)


def main(arguments=None):
    options = parse(arguments)
    try:
        complaints = compare(options)
    except Failed as failure:
        print(f"compare: {failure}", file=sys.stderr)
        return 1
    for complaint in complaints:
        print(f"compare: unequal work: {complaint}", file=sys.stderr)
    return 1 if complaints else 0


def parse(arguments):
    parser = argparse.ArgumentParser(
        prog="bench/compare",
        description="Measures the module and the command beside their peers and prints one table. "
                    "Missed targets do not fail the run; unequal work does.")
    parser.add_argument("folders", metavar="FOLDER", nargs="*", type=Path,
                        help="more files to read in process: sets of their own")
    parser.add_argument("--quick", action="store_true",
                        help="a tiny run that shows that everything works; its times mean nothing")
    parser.add_argument("--json", metavar="FILE", type=Path, help="write all figures there, too")
    parser.add_argument("--build", metavar="FOLDER", type=Path,
                        help="take this build as it is; install and build nothing")
    return parser.parse_args(arguments)


def compare(options):
    """Prints the table and gives sentences on unequal work."""
    effort = QUICK if options.quick else FULL
    build = options.build.resolve() if options.build else built()
    with sources.scratch_folder() as scratch:
        facts = machine.description(scratch)
        rows, complaints = measured(build, scratch, options.folders, effort)
    targets.assign(rows)
    print(machine.text_of(facts))
    print(table.text_of(rows), end="")
    if options.json:
        options.json.write_text(table.json_of(facts, rows), encoding="utf-8")
    return complaints


def built():
    """The folder of the build that is measured, brought up to date."""
    progress("building")
    run(ROOT / "scripts/install-packages", "build", "bench")
    run("cmake", "--preset", "bench", cwd=ROOT)
    run("cmake", "--build", "--preset", "bench", cwd=ROOT)
    return ROOT / "build/bench"


def measured(build, scratch, folders, effort):
    progress("generating files")
    small = sources.generate(build, scratch / "small", "--count", effort.files,
                             "--largest", effort.largest)
    many = sources.generate(build, scratch / "many", "--count", effort.batch_files,
                            "--sets", "photographs-tiff") / "photographs-tiff"
    images = [EXAMPLES / "camera.tif", EXAMPLES / "photo.jpg"]
    everything = [sources.source_of(EXAMPLES), *sources.generated_sources(small),
                  *(sources.source_of(folder.resolve()) for folder in folders)]
    progress("reading in process")
    rows, complaints = in_process.rows(build, everything, effort.rounds, effort.files)
    progress("running processes")
    rows += whole_process.rows(build, images, effort.passes, effort.runs)
    progress("running batches")
    rows += batch.rows(build, many, effort.passes)
    progress("reading files that grow")
    grown, more_complaints = growth.rows(build, small / "growing", EXAMPLES / "gray.tif",
                                         min(effort.rounds, 7))
    return rows + grown, complaints + more_complaints


def progress(what):
    print(f"compare: {what}", file=sys.stderr, flush=True)
