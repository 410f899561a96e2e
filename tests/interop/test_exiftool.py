"""Every tag that ExifTool shows is reported and the other way round, and the values agree.

Where the two differ on purpose, a table below names the tag and says why.
"""

import base64
import math

import numpy
import pytest
from encoders import ENCODERS
from readers import is_image
from vocabulary import (FALLBACKS, GENERAL, GRAY_RESPONSE_UNITS, WORDS, as_list, max_sample_value,
                        names_of)

# ExifTool prints ten significant digits of a quotient; whole numbers it prints in full.
TOLERANCE = 1e-9

# Of these ExifTool shows what the block holds, in groups of its own, not the block.
BLOCKS = {"XMP", "ITPC"}

# Reported as characters by ExifTool and as numbers by the module: they are of type UNDEFINED.
UNDEFINED_TEXTS = {"ExifVersion", "FlashpixVersion", "InteroperabilityVersion"}

# Texts after eight bytes that name their encoding; ExifTool shows the text alone.
ENCODED_TEXTS = {"UserComment", "GPSProcessingMethod"}

# Apex values, that ExifTool turns into seconds and apertures.
APEX = {
    "ShutterSpeedValue": lambda value: 2 ** -value,
    "ApertureValue": lambda value: 2 ** (value / 2),
    "MaxApertureValue": lambda value: 2 ** (value / 2),
}

# Degrees, minutes and seconds, that ExifTool adds up.
ANGLES = {"GPSLatitude", "GPSLongitude"}

# ExifTool writes three numbers as hours, minutes and seconds.
TIMES = {"GPSTimeStamp"}

# Tags of BigTIFF files that the module refuses or reads elsewhere.
BIGTIFF_DIFFERENCES = {
    "tiffcp_bigtiff": {
        "StripOffsets",  # 64-bit values are refused, with a warning.
    },
    "tifffile_bigtiff": {
        "StripOffsets",
        # Values of more than eight bytes are read where bytes 8 to 11 of the entry point: in a
        # little-endian file, at its start.
        "ImageDescription",
    },
}


def agreeing(name, value):
    """What ExifTool shows for a value that the module reports."""
    if name in UNDEFINED_TEXTS:
        return bytes(value).decode("ascii")
    if name in ENCODED_TEXTS:
        return bytes(value[8:]).decode("ascii")
    if name in APEX:
        return APEX[name](value)
    if name in ANGLES:
        return value[0] + value[1] / 60 + value[2] / 3600
    if name in TIMES:
        return ":".join(f"{part:02g}" for part in value)
    return value


def binary(shown):
    """The bytes of a value that ExifTool takes for binary data."""
    return base64.b64decode(shown.removeprefix("base64:"))


def numbers_in(shown):
    """The numbers of a value of ExifTool, None for a zero denominator; nothing for a text."""
    if str(shown).startswith("base64:"):
        return [float(byte) for byte in binary(shown)]
    try:
        return [None if word == "undef" else float(word) for word in str(shown).split()]
    except ValueError:
        return None


def is_close(ours, theirs):
    if None in (ours, theirs):
        return ours is theirs
    return ours == theirs if theirs.is_integer() else math.isclose(ours, theirs, rel_tol=TOLERANCE)


def agrees_with_code(name, value, shown):
    """An enumerated code that the module reports as a word, in a list when there are several."""
    codes = numbers_in(shown)
    if name == "GrayResponseUnit":
        return value == GRAY_RESPONSE_UNITS[codes[0]]
    words = [WORDS[name][code] for code in codes]
    return as_list(value) == (words if name == "SampleFormat" else words[:1])


def agrees_with_colormap(value, shown, byte_order):
    numbers = numpy.frombuffer(binary(shown), byte_order + "u2")
    columns = (numbers / 65535).reshape(3, -1)
    return value == columns.T.tolist()


def agrees(name, value, shown):
    value = agreeing(name, value)
    if isinstance(value, str):
        # ExifTool shows a text up to its first NUL; the module keeps all of it.
        return str(shown) == value.partition("\0")[0]
    numbers = numbers_in(shown)
    return numbers is not None and len(numbers) == len(as_list(value)) and all(
        map(is_close, as_list(value), numbers))


def same(place, name, value, shown, byte_order):
    if name == "Colormap":
        return agrees_with_colormap(value, shown, byte_order)
    if is_image(place) and (name in WORDS or name == "GrayResponseUnit"):
        return agrees_with_code(name, value, shown)
    return agrees(name, value, shown)


def reported_tags(place, fields, shown):
    """The fields that stand for tags of the file, by name or, where there is none, by id."""
    tags = {name: value for name, value in fields.items()
            if name not in GENERAL | BLOCKS | {"UnknownTags"}}
    if is_image(place):
        fallbacks = FALLBACKS | {"MaxSampleValue": max_sample_value(fields["BitsPerSample"])}
        tags = {name: value for name, value in tags.items()
                if name in shown or value != fallbacks.get(name)}
    return tags | {tag["ID"]: tag["Value"] for tag in fields.get("UnknownTags", [])}


def differing(place, fields, shown_by_id):
    """The names, or ids, of the tags that one side lacks or that differ."""
    names = names_of(place)
    shown = {names.get(tag, tag): value for tag, value in shown_by_id.items()
             if value != "undef"}  # NaN, which JSON does not tell from an empty field
    tags = reported_tags(place, fields, shown)
    byte_order = "<" if fields.get("ByteOrder") == "little-endian" else ">"
    return (tags.keys() ^ shown.keys()) | {
        name for name in tags.keys() & shown.keys()
        if not same(place, name, tags[name], shown[name], byte_order)}


@pytest.mark.parametrize("file", ENCODERS)
def test_shows_the_same_tags_with_the_same_values(file, results, exiftool_results):
    places = results[file].places
    assert set(places) == set(exiftool_results[file])
    found = {place: differing(place, places[place], shown)
             for place, shown in exiftool_results[file].items()}
    listed = BIGTIFF_DIFFERENCES.get(file, set())
    assert found == {place: listed if place == "IFD0" else set() for place in places}


def test_every_tag_that_the_tables_name_occurs(results):
    occurring = {name for result in results.values()
                 for fields in result.places.values() for name in fields}
    for table in (BLOCKS, UNDEFINED_TEXTS, ENCODED_TEXTS, APEX.keys(), ANGLES, TIMES):
        assert set(table) <= occurring
