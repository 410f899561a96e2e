"""Every entry that tifffile finds is reported, nothing else is, and every value is exact."""

import os
import sys
import time

import pytest
from encoders import ENCODERS
from readers import ASCII, LONG8, is_image, read_with_tifffile
from vocabulary import (COLOR_TYPES, FALLBACKS, REPLACEMENTS, UNKNOWN, as_list, max_sample_value,
                        names_of, words_for)


def text(value):
    return value.decode("ascii")


def flat(values):
    return values[0] if len(values) == 1 else values


def rows(values):
    third = len(values) // 3
    return [[red / 65535, green / 65535, blue / 65535]
            for red, green, blue in zip(values, values[third:], values[2 * third:])]


def reported(name, entry):
    """The value of a named tag as the module reports it, in JSON."""
    if name == "ImageDescription":
        return text(entry.value[:-1])  # The only text that loses its NUL.
    if entry.data_type == ASCII:
        return text(entry.value)
    if name in REPLACEMENTS:
        return words_for(name, entry.value)
    if name == "Colormap":
        return rows(entry.value)
    if name == "XMP":
        return bytes(entry.value).decode("utf-8")
    return flat(entry.value)


def reported_unknown(tag, entry):
    value = entry.value
    # A text becomes a string of the host, which ends at the first NUL.
    value = text(value.partition(b"\0")[0]) if entry.data_type == ASCII else flat(value)
    return {"ID": tag, "Offset": entry.offset, "Value": value}


def general_fields(path, fields, entries):
    status = os.stat(path)
    with open(path, "rb") as file:
        mark = file.read(4)
    byte_order = {b"II": "little-endian", b"MM": "big-endian"}[mark[:2]]
    version = int.from_bytes(mark[2:], {b"II": "little", b"MM": "big"}[mark[:2]])
    # The signature holds the version in the order of the machine.
    signature = [mark[0], mark[1], *version.to_bytes(2, sys.byteorder)]
    if 320 in entries:
        color_type = "indexed"
    else:
        color_type = COLOR_TYPES[entries[262].value[0]]
    return {
        "Filename": str(path),
        "FileModDate": time.strftime("%d-%b-%Y %H:%M:%S", time.localtime(int(status.st_mtime))),
        "FileSize": status.st_size,
        "Format": "tif",
        "BitDepth": sum(as_list(fields["BitsPerSample"])),
        "ColorType": color_type,
        "FormatSignature": signature,
        "ByteOrder": byte_order,
    }


def expected_fields(path, place, entries):
    names = names_of(place)
    # Values of 64 bits are refused, with a warning.
    kept = {tag: entry for tag, entry in entries.items() if entry.data_type != LONG8}
    fields = {names[tag]: reported(names[tag], entry)
              for tag, entry in kept.items() if tag in names}
    unknown = [reported_unknown(tag, entry) for tag, entry in kept.items() if tag not in names]
    assert {tag["ID"] for tag in unknown} <= UNKNOWN.get(place, set())
    if unknown:
        fields["UnknownTags"] = unknown
    if is_image(place):
        fields = FALLBACKS | fields
        fields.setdefault("MaxSampleValue", max_sample_value(fields["BitsPerSample"]))
        fields |= general_fields(path, fields, entries)
    # A single quotient by zero is NaN, which looks in JSON like an empty field.
    return {field: value for field, value in fields.items() if value is not None}


@pytest.mark.parametrize("name", ENCODERS)
def test_reports_exactly_what_the_file_holds(name, paths, results):
    places = read_with_tifffile(paths[name])
    assert results[name].error is None
    assert set(results[name].places) == set(places)
    for place, entries in places.items():
        assert results[name].places[place] == expected_fields(paths[name], place, entries)


@pytest.mark.parametrize("name", ENCODERS)
def test_warns_of_what_it_refuses_and_of_nothing_else(name, paths, results):
    expected = []
    for place, entries in read_with_tifffile(paths[name]).items():
        for tag, entry in entries.items():
            if entry.data_type == LONG8:
                expected.append(("ZEPHRA:veltrace:badTagFormat", f"Tag ID {tag} "))
            elif None in list(entry.value):
                signed = "signedRational" if entry.data_type == 10 else "rational"
                expected.append((f"ZEPHRA:veltrace:{signed}:badTagValueDivisionByZero",
                                 f'The computation of the tag value for "'
                                 f'{names_of(place).get(tag, "")}"'))
    actual = results[name].warnings
    assert len(actual) == len(expected)
    # Nested directories are read when their pointer is met, so only the set is compared.
    for identifier, start in expected:
        assert any(warning["id"] == identifier and warning["text"].startswith(start)
                   for warning in actual)
