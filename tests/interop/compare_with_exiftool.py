#!/usr/bin/python3
"""Compares what veltrace and ExifTool report of the JPEG files of a folder, tag by tag.

Prints each difference with its class and how many there are of each. The exit status is 1 when some
difference belongs to no class; docs/interop.md explains the classes.
"""

import argparse
import collections
import dataclasses
import pathlib
import sys

from differences import Pair, agree, class_of
from exif_segment import exif_segment
from readers import read_with_veltrace, show_with_exiftool
from vocabulary import GENERAL, names_of

PLACES = ("IFD0", "ExifIFD", "GPS", "InteropIFD")
REPEATED = "repeated-entry"
AGREE = "agree"


@dataclasses.dataclass
class Judged:
    """`verdict` is AGREE, the class of the difference, or None for a difference of no class."""

    file: pathlib.Path
    pair: Pair
    verdict: str | None


def jpeg_files(folder):
    for path in sorted(folder.rglob("*")):
        if path.is_file():
            with open(path, "rb") as file:
                if file.read(2) == b"\xff\xd8":
                    yield path


def reported_values(place, fields):
    """Lists of values by tag. A field that no tag accounts for keeps its name, to be noticed."""
    tags = {name: tag for tag, name in names_of(place).items()}
    values = collections.defaultdict(list)
    for name, value in fields.items():
        # The width and height of a directory that lacks the tags are 0.
        is_no_size = name in ("Width", "Height") and value == 0
        if name not in GENERAL | {"UnknownTags"} and not is_no_size:
            values[tags.get(name, name)].append(value)
    for unknown in fields.get("UnknownTags", []):
        values[unknown["ID"]].append(unknown["Value"])
    return values


def judge_tag(values, entries, make_pair):
    """Yields pairs of the values and entries of one tag with their verdicts.

    The module reports one of several entries of a name: the best match is compared.
    """
    values, entries = list(values), list(entries)
    are_repeated = bool(values)
    while values and entries:
        pairs = [make_pair(value, entry) for value in values for entry in entries]
        best = next(filter(agree, pairs), None) or next(filter(class_of, pairs), pairs[0])
        yield best, AGREE if agree(best) else class_of(best)
        values.remove(best.reported)
        entries.remove(best.shown)
    for entry in entries:
        pair = make_pair(None, entry)
        yield pair, REPEATED if are_repeated else class_of(pair)
    for value in values:
        pair = make_pair(value, None)
        yield pair, class_of(pair)


def judge_file(path, result, showing):
    context = {"segment": exif_segment(path),
               "warnings": tuple(warning["text"] for warning in result.warnings),
               "shown_warnings": tuple(showing.warnings)}
    for place in PLACES:
        values = reported_values(place, result.places.get(place, {}))
        entries = collections.defaultdict(list)
        for entry in showing.entries:
            if entry.place == place:
                entries[entry.tag].append(entry)
        for tag in sorted(values.keys() | entries.keys(), key=str):
            for pair, verdict in judge_tag(
                    values.get(tag, []), entries.get(tag, []),
                    lambda value, entry: Pair(place, tag, value, entry, **context)):
                yield Judged(path, pair, verdict)


def compare(paths, veltrace):
    return [judged
            for path, result, showing in zip(paths, read_with_veltrace(paths, veltrace),
                                             show_with_exiftool(paths), strict=True)
            for judged in judge_file(path, result, showing)]


def short(value):
    text = repr(value)
    return text if len(text) <= 60 else text[:60] + "..."


def line(judged, folder):
    pair = judged.pair
    shown = short(pair.text) if pair.shown else "nothing"
    return (f"{judged.file.relative_to(folder)}: {pair.place} {pair.name or '?'} ({pair.tag}): "
            f"{judged.verdict or 'NOT EXPLAINED'}: {short(pair.reported)} / {shown}")


def summary(judgements, file_count):
    by_place = collections.Counter((j.pair.place, j.verdict == AGREE) for j in judgements)
    by_class = collections.Counter(j.verdict or "NOT EXPLAINED" for j in judgements)
    agreements = by_class.pop(AGREE, 0)
    yield (f"{file_count} JPEG files, {len({j.file for j in judgements})} with tags: "
           f"{len(judgements)} tags compared, {agreements} agree, {by_class.total()} differ")
    for place in PLACES:
        same, other = by_place[place, True], by_place[place, False]
        yield f"{place:24}{same + other:6} compared{same:6} agree{other:6} differ"
    for name, count in sorted(by_class.items(), key=lambda item: (-item[1], item[0])):
        yield f"{name:24}{count:6}"


def parsed_arguments():
    parser = argparse.ArgumentParser(description=__doc__.partition("\n")[0])
    parser.add_argument("--veltrace", required=True, help="the command to compare")
    parser.add_argument("--summary", action="store_true", help="print counts only")
    parser.add_argument("folder", type=pathlib.Path, help="every JPEG file below it is read")
    return parser.parse_args()


def main():
    arguments = parsed_arguments()
    paths = list(jpeg_files(arguments.folder))
    if not paths:
        sys.exit(f"no JPEG file below {arguments.folder}")
    judgements = compare(paths, arguments.veltrace)
    for judged in judgements:
        if judged.verdict is None or not arguments.summary and judged.verdict != AGREE:
            print(line(judged, arguments.folder))
    print(*summary(judgements, len(paths)), sep="\n")
    return any(judged.verdict is None for judged in judgements)


if __name__ == "__main__":
    sys.exit(main())
