#!/usr/bin/python3
"""Compares what the module reports for files with what the second reading predicts.

Files are generated, or named, or all that lie below a named directory. Ends with status 1 when any
file differs.
"""

import argparse
import collections
import dataclasses
import functools
import multiprocessing
import os
import random
import secrets
import sys
import tempfile
import time

from differences import differences
from generating.cases import case
from generator import write
from messages import IDENTIFIERS, identifiers_in, missing, outcome
from module_process import ReadingFailed, readings
from reading.host import Limits
from reading.prediction import predict

BATCH = 200
MAX_SHOWN = 20

# A zone of local time is chosen for each run; these are ahead, behind, with and without summers.
ZONES = ["UTC0", "CET-1CEST,M3.5.0,M10.5.0/3", "NST3:30NDT,M3.2.0,M11.1.0", "<+1245>-12:45"]


@dataclasses.dataclass
class Tally:
    files: int = 0
    outcomes: collections.Counter = dataclasses.field(default_factory=collections.Counter)
    identifiers: collections.Counter = dataclasses.field(default_factory=collections.Counter)
    different: list = dataclasses.field(default_factory=list)

    def add(self, other):
        self.files += other.files
        self.outcomes += other.outcomes
        self.identifiers += other.identifiers
        self.different += other.different

    def note(self, what, prediction, lines):
        self.files += 1
        self.outcomes[outcome(prediction)] += 1
        self.identifiers.update(identifiers_in(prediction))
        if lines:
            self.different.append((what, lines))


def compare(program, requests, labels):
    """The lines about a file begin with its label."""
    tally = Tally()
    try:
        all_found = readings(program, requests)
    except ReadingFailed as failure:
        culprit = labels[min(failure.position, len(labels) - 1)]
        tally.different.append((culprit, [str(failure)]))
        return tally
    for (name, limits), label, found in zip(requests, labels, all_found):
        expected = predict(name, limits) | {"misuses": []}
        tally.note(label, expected, differences(expected, found))
    return tally


def compare_named(program, limits, names):
    return compare(program, [(name, limits) for name in names], [repr(name) for name in names])


def compare_generated(program, seed, indices):
    requests, labels = [], []
    with tempfile.TemporaryDirectory(prefix="veltrace-reference-", dir=quick_place()) as directory:
        for index in indices:
            made = case(seed, index)
            name = os.path.join(os.fsencode(directory), b"%d" % index + made.suffix)
            write(made, name)
            requests.append((name, Limits(made.block_budget, made.largest_block)))
            labels.append(f"generator.py --seed {seed} --index {index}")
        return compare(program, requests, labels)


def quick_place():
    """A file system in memory, which holds every date as well."""
    return "/dev/shm" if os.access("/dev/shm", os.W_OK) else None


def files_below(paths):
    for path in map(os.fsencode, paths):
        if not os.path.isdir(path):
            yield path
        for directory, _, names in sorted(os.walk(path)):
            yield from (os.path.join(directory, name) for name in sorted(names))


def batches(items):
    return [items[start : start + BATCH] for start in range(0, len(items), BATCH)]


def jobs(options):
    program = os.path.abspath(options.module_reading)
    limits = Limits(options.blocks, options.largest_block)
    for names in batches(list(files_below(options.paths))):
        yield functools.partial(compare_named, program, limits, names)
    for indices in batches(range(options.generated)):
        yield functools.partial(compare_generated, program, options.seed, indices)


def run(job):
    sys.setrecursionlimit(100000)
    return job()


def choose_zone(seed):
    os.environ["TZ"] = random.Random(seed).choice(ZONES)
    time.tzset()


def report(tally, options):
    for what, lines in tally.different[:MAX_SHOWN]:
        print(what, *lines[:10], sep="\n  ")
    if options.messages:
        for identifier in sorted(set(IDENTIFIERS) | set(tally.identifiers)):
            print(f"{tally.identifiers[identifier]:8} {identifier}")
    appeared = len(IDENTIFIERS) - len(missing(tally.identifiers))
    print(f"{appeared} of the {len(IDENTIFIERS)} messages that a file can cause appeared")
    shares = ", ".join(f"{tally.outcomes[name]} {name}" for name in ("errors", "warnings", "quiet"))
    print(f"{tally.files} files compared ({shares}): {len(tally.different)} differ")


def parsed_options():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--module-reading", required=True, help="the program of that name")
    parser.add_argument("--generated", type=int, default=0, help="how many files to generate")
    parser.add_argument("--seed", default=secrets.token_hex(4), help="of the generator")
    parser.add_argument("--processes", type=int, default=2)
    parser.add_argument("--blocks", type=int, default=2000, help="for each named file")
    parser.add_argument("--largest-block", type=int, default=1 << 26, help="for each named file")
    parser.add_argument("--messages", action="store_true", help="count messages by identifier")
    parser.add_argument("paths", nargs="*", help="files, and directories of files")
    return parser.parse_args()


def main():
    options = parsed_options()
    choose_zone(options.seed)
    print(f"seed {options.seed}, time zone {os.environ['TZ']}", flush=True)
    tally = Tally()
    with multiprocessing.Pool(options.processes) as pool:
        for part in pool.imap_unordered(run, jobs(options)):
            tally.add(part)
    report(tally, options)
    return 1 if tally.different or not tally.files else 0


if __name__ == "__main__":
    sys.exit(main())
