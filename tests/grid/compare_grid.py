#!/usr/bin/python3
"""Compares the module's reading of entries of every tag, type and count with the second reading.

Fails with status 1 when any file differs.
"""

import argparse
import functools
import itertools
import multiprocessing
import pathlib
import sys
import tempfile

HERE = pathlib.Path(__file__).parent
sys.path += [str(HERE.parent / "reference"), str(HERE.parent / "vocabulary")]
# pylint: disable=wrong-import-position
from cases import CONTAINERS, ORDERS, PLACES, files
from compare import Tally, batches, compare_named, quick_place, run
from reading.host import Limits


def compare_setting(program, keep, setting):
    """The tally of a setting's files, and the number of their entries."""
    tally, entries = Tally(), 0
    with tempfile.TemporaryDirectory(prefix="veltrace-grid-", dir=quick_place()) as directory:
        names = []
        for index, (size, content) in enumerate(files(*setting)):
            name = pathlib.Path(keep or directory, "-".join(map(str, [*setting, index])))
            name.write_bytes(content)
            names.append(bytes(name))
            entries += size
        for batch in batches(names):
            tally.add(compare_named(program, Limits(), batch))
    return tally, entries


def parsed_options():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--module-reading", required=True, help="the program of that name")
    parser.add_argument("--processes", type=int, default=2)
    parser.add_argument("--keep", help="an existing directory for the files, for other readers")
    return parser.parse_args()


def main():
    options = parsed_options()
    work = functools.partial(compare_setting, options.module_reading, options.keep)
    tally, entries = Tally(), 0
    with multiprocessing.Pool(options.processes) as pool:
        settings = itertools.product(CONTAINERS, ORDERS, PLACES)
        for part, count in pool.imap_unordered(work, settings):
            tally.add(part)
            entries += count
    for what, lines in tally.different[:20]:
        print(what, *lines[:10], sep="\n  ")
    print(f"{entries} entries in {tally.files} files: {len(tally.different)} differ")
    return 1 if tally.different or not entries else 0


if __name__ == "__main__":
    sys.exit(main())
