"""What several readers report of the same files, in one shape.

A file is a dict from a place to what its directory holds. Places are named as ExifTool names its
groups: IFD0, IFD1, ... for the main directories, SubIFD, ExifIFD, GPS and InteropIFD for nested
ones.
"""

import dataclasses
import json
import os
import pathlib
import struct
import subprocess

import numpy
import tifffile

POINTERS = {330: "SubIFD", 34665: "ExifIFD", 34853: "GPS", 40965: "InteropIFD"}
POINTER_NAMES = {"SubIFDs": "SubIFD", "DigitalCamera": "ExifIFD", "GPSInfo": "GPS",
                 "InteroperabilityIFD": "InteropIFD"}


def is_image(place):
    """Whether the directory describes an image, and so has fallback values and general fields."""
    return place.startswith(("IFD", "SubIFD"))


# The command

@dataclasses.dataclass
class Result:
    """What the command reports of a file: fields by name for each place, empty ones left out."""

    places: dict
    warnings: list
    error: object


def places_of(directories, names):
    places = {}
    for name, directory in zip(names, directories, strict=True):
        places[name] = {}
        for field, value in directory.items():
            if field in POINTER_NAMES and value is not None:
                places |= places_of(value, [POINTER_NAMES[field]])
            elif value is not None:
                places[name][field] = value
    return places


def read_with_veltrace(paths, command=None):
    run = subprocess.run([command or os.environ["VELTRACE"], "--json", *paths],
                         stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False)
    if run.returncode not in (0, 1):  # 1: some file failed, as its result shows.
        run.check_returncode()
    results = json.loads(run.stdout)
    return [
        Result(places_of(result["info"], [f"IFD{i}" for i in range(len(result["info"]))]),
               result["warnings"], result["error"])
        for result in results]


# ExifTool

@dataclasses.dataclass
class Shown:
    """An entry as ExifTool shows it: the type that the file gives it, and the value as a text."""

    place: str
    tag: int
    format: str
    text: str


@dataclasses.dataclass
class Showing:
    """What ExifTool reports of a file: every entry, in no order, and its warnings."""

    entries: list
    warnings: list


def showing(described):
    result = Showing([], [])
    del described["SourceFile"]
    for key, tag in described.items():
        parts = key.split(":")  # Place, perhaps Copy1 or so for a repeated name, type, name.
        if parts[-1] == "Warning":
            result.warnings.append(tag["val"])
        # What ExifTool derives from several tags has a name for an id.
        elif (is_image(parts[0]) or parts[0] in POINTERS.values()) and tag["id"].isdigit():
            result.entries.append(Shown(parts[0], int(tag["id"]), parts[-2], str(tag["val"])))
    return result


def show_with_exiftool(paths):
    """A Showing for each file. Numbers stay as they are written: a text may look like one."""
    run = subprocess.run(
        ["exiftool", "-j", "-n", "-a", "-u", "-b", "-G1:4:6", "-api", "SaveFormat", "-D", *paths],
        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False)
    return [showing(file) for file in json.loads(run.stdout, parse_int=str, parse_float=str)]


def read_with_exiftool(paths):
    """For each file, the values by tag id for each place."""
    files = []
    for shown in show_with_exiftool(paths):
        places = {}
        for entry in shown.entries:
            assert entry.tag not in places.setdefault(entry.place, {})
            places[entry.place][entry.tag] = entry.text
        files.append(places)
    return files


# tifffile

NUMPY_TYPES = {1: "u1", 3: "u2", 4: "u4", 5: "u4", 6: "i1", 7: "u1", 8: "i2", 9: "i4", 10: "i4",
               11: "f4", 12: "f8", 13: "u4",
               16: "u8"}
ASCII, RATIONALS, LONG8 = 2, (5, 10), 16


@dataclasses.dataclass
class Entry:
    """One entry of a directory. `value` is the bytes of an ASCII value, otherwise a list of
    numbers; rationals are quotients, None for a zero denominator."""

    data_type: int
    count: int
    is_inline: bool
    offset: int
    value: object


class Directories:
    """Walks the directories of a file; entries and their places are tifffile's work."""

    def __init__(self, file):
        self.file = file
        self.tiff = file.tiff
        self.content = pathlib.Path(file.filehandle.path).read_bytes()

    def value_at(self, offset, data_type, count):
        if data_type == ASCII:
            return self.content[offset:offset + count]
        per_value = 2 if data_type in RATIONALS else 1
        numbers = numpy.frombuffer(self.content, self.tiff.byteorder + NUMPY_TYPES[data_type],
                                   count * per_value, offset).tolist()
        if per_value == 1:
            return numbers
        return [n / d if d else None for n, d in zip(numbers[::2], numbers[1::2])]

    def entry(self, at):
        tag = tifffile.TiffTag.fromfile(self.file, offset=at)
        inline_at = at + self.tiff.tagsize - self.tiff.tagoffsetthreshold
        # tifffile takes the offset of a nested directory for the place of the value.
        is_inline = tag.valueoffset == inline_at or tag.code in POINTERS
        offset = inline_at if is_inline else tag.valueoffset
        if not is_inline and self.tiff.is_bigtiff:
            # The module takes the offset from bytes 8 to 11 of any entry: in BigTIFF the high half
            # of the count.
            offset, = struct.unpack_from(self.tiff.byteorder + "I", self.content, at + 8)
        return tag.code, Entry(int(tag.dtype), tag.count, is_inline, 0 if is_inline else offset,
                               self.value_at(offset, int(tag.dtype), tag.count))

    def directory(self, place, at):
        count, = struct.unpack_from(self.tiff.tagnoformat, self.content, at)
        entries = dict(self.entry(at + self.tiff.tagnosize + self.tiff.tagsize * i)
                       for i in range(count))
        places = {place: {}}
        for code, entry in entries.items():
            if code in POINTERS:
                places |= self.directory(POINTERS[code], entry.value[0])
            else:
                places[place][code] = entry
        return places


def read_with_tifffile(path):
    """The entries by tag id for each place."""
    with tifffile.TiffFile(path) as file:
        directories = Directories(file)
        places = {}
        for i, page in enumerate(file.pages):
            places |= directories.directory(f"IFD{i}", page.offset)
        return places
