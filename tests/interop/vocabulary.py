"""The names and words of the module, by field name and place as these tests need them."""

import pathlib
import sys

sys.path.append(str(pathlib.Path(__file__).parents[1] / "vocabulary"))
# pylint: disable=wrong-import-position
import tag_vocabulary as tables
from tag_vocabulary import COLOR_TYPES, GPS_NAMES, IMAGE_NAMES, INTEROPERABILITY_NAMES

# Tags of the files here that the module has no name for: they go to UnknownTags.
UNKNOWN = {
    "IFD0": {65000, 65001, 65002, 65003, 65004, 65005, 65006},
    "ExifIFD": {42034, 42036},
    "GPS": {31},
}


def names_of(place):
    return {"GPS": GPS_NAMES, "InteropIFD": INTEROPERABILITY_NAMES}.get(place, IMAGE_NAMES)


def by_name(rows_by_tag):
    return {IMAGE_NAMES[tag]: rows for tag, rows in rows_by_tag.items()}


# By name of the tag: what replaces each code, and the word of every other code.
REPLACEMENTS = by_name(tables.WORDS | tables.WORD_LISTS | tables.MULTIPLIERS)

# Fields of an image directory that no tag of the file stands for.
GENERAL = {"Filename", "FileModDate", "FileSize", "Format", "BitDepth", "ColorType",
           "FormatSignature", "ByteOrder"}


def word(name, code):
    """What the module reports for a code."""
    words, otherwise = REPLACEMENTS[name]
    return words.get(code, otherwise)


# What an image directory without the tag reports; MaxSampleValue follows from BitsPerSample.
FALLBACKS = {
    name: word(name, int(value)) if name in REPLACEMENTS else value
    for name, value in by_name(tables.FALLBACKS).items() if value is not None
}


def words_for(name, codes):
    """What the module reports for the codes of a tag: but for SampleFormat, one word for the
    first."""
    if name != "SampleFormat":
        return word(name, codes[0])
    _, otherwise = REPLACEMENTS[name]
    words = [word(name, code) for code in codes]
    if otherwise in words:
        return otherwise
    return words[0] if len(words) == 1 else words


def max_sample_value(bits_per_sample):
    values = [2.0 ** bits - 1 for bits in as_list(bits_per_sample)]
    return values[0] if len(values) == 1 else values


def as_list(value):
    return value if isinstance(value, list) else [value]
