"""Every tag that ExifTool shows is reported and the other way round, and the values agree.

Where the two differ on purpose, a table below has the tag and the reason.
"""

import numpy
import pytest
from differences import LOGARITHMS
from encoders import ENCODERS
from readers import is_image
from shown_values import are_close, binary, numbers_in
from vocabulary import (FALLBACKS, GENERAL, REPLACEMENTS, as_list, max_sample_value, names_of,
                        words_for)

# Of these ExifTool shows what the block holds, in groups of its own, not the block.
BLOCKS = {"XMP", "ITPC"}

# Reported as characters by ExifTool and as numbers by the module: they are of type UNDEFINED.
UNDEFINED_TEXTS = {"ExifVersion", "FlashpixVersion", "InteroperabilityVersion"}

# Texts after eight bytes that name their encoding; ExifTool shows the text alone.
ENCODED_TEXTS = {"UserComment", "GPSProcessingMethod"}

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
    if name in LOGARITHMS:
        return LOGARITHMS[name](value)
    if name in ANGLES:
        return value[0] + value[1] / 60 + value[2] / 3600
    if name in TIMES:
        return ":".join(f"{part:02g}" for part in value)
    return value


def agrees_with_colormap(value, shown, byte_order):
    numbers = numpy.frombuffer(binary(shown), byte_order + "u2")
    columns = (numbers / 65535).reshape(3, -1)
    return value == columns.T.tolist()


def agrees(name, value, shown):
    value = agreeing(name, value)
    if isinstance(value, str):
        # ExifTool shows a text up to its first NUL; the module keeps all of it.
        return shown == value.partition("\0")[0]
    return are_close(as_list(value), numbers_in(shown))


def same(place, name, value, shown, byte_order):
    if name == "Colormap":
        return agrees_with_colormap(value, shown, byte_order)
    if is_image(place) and name in REPLACEMENTS:
        return value == words_for(name, numbers_in(shown))
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
             if value != "undef"}  # NaN, which looks in JSON like an empty field
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
    for table in (BLOCKS, UNDEFINED_TEXTS, ENCODED_TEXTS, LOGARITHMS.keys(), ANGLES, TIMES):
        assert set(table) <= occurring
