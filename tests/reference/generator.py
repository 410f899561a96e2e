#!/usr/bin/python3
"""Writes generated files: `generator.py --seed S --index N FILE`, or with `--count C DIRECTORY`."""

import argparse
import os

from generating.cases import case


def write(made, path):
    if made.content is None:
        return
    with open(path, "wb") as file:
        file.write(made.content)
        if made.far is not None:
            file.seek(made.far[0])
            file.write(made.far[1])
    if made.date is not None:
        try:
            os.utime(path, (made.date, made.date))
        except (OSError, OverflowError):
            pass  # No such date on this file system; the file keeps the one it has.


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--seed", required=True, help="of all files")
    parser.add_argument("--index", type=int, default=0, help="of the file, or of the first one")
    parser.add_argument("--count", type=int, help="how many to write into a directory")
    parser.add_argument("path", help="the file, or the directory")
    options = parser.parse_args()
    if options.count is None:
        made = case(options.seed, options.index)
        write(made, options.path)
        print(f"{made.block_budget} blocks, the largest of {made.largest_block} bytes")
        return
    for index in range(options.index, options.index + options.count):
        made = case(options.seed, index)
        write(made, os.path.join(os.fsencode(options.path), b"%d" % index + made.suffix))


if __name__ == "__main__":
    main()
