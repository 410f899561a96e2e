"""Each class of difference takes in its own and refuses what comes near."""

import dataclasses
import pathlib
import re

import pytest
from compare_with_exiftool import REPEATED
from differences import CLASSES, Pair, agree, class_of
from exif_segment import ExifSegment
from readers import Shown


def pair(place, tag, reported, shown_format=None, text="", **context):
    shown = Shown(place, tag, shown_format, text) if shown_format else None
    return Pair(place, tag, reported, shown, **context)


def by_zero(name):
    return (f'The computation of the tag value for "{name}" involves division by zero.  '
            "The value has been set to NaN.\n",)


# A segment of a text that goes on in the next, and the same with something else behind it.
TEXT = b"\xff\xe1\x00\x0dExif\0\0MM*ab"
NEXT = b"\xff\xe1\x00\x0bExif\0\0cd\0"
TWO_SEGMENTS = ExifSegment(12, 17, b"\xff\xd8" + TEXT + NEXT)
OTHER_NEXT = ExifSegment(12, 17, b"\xff\xd8" + TEXT + NEXT.replace(b"\xe1", b"\xe2"))
CUT_NEXT = ExifSegment(12, 17, b"\xff\xd8" + TEXT + NEXT[:-1])
FORMAT_ERROR = ("JPEG format error",)

EXIF, GPS = "ExifIFD", "GPS"

# Of each class: differences that belong to it.
MEMBERS = [
    ("word-for-code", pair("IFD0", 296, "Inch", "int16u", "2")),
    ("word-for-code", pair("IFD0", 296, "Unknown", "int16u", "9")),
    ("word-for-code", pair("IFD0", 317, "unknown", "int16u", "9")),
    ("word-for-code", pair("IFD0", 290, 0.01, "int16u", "2")),
    ("word-for-code", pair("IFD0", 339, ["Unsigned integer"] * 2, "int16u", "1 1")),
    ("word-for-code", pair("IFD0", 339, "Unknown", "int16u", "1 7")),
    ("padded-text", pair("IFD0", 271, "Sample \0", "string", "Sample")),
    ("padded-text", pair("IFD0", 271, "Sample\0\0", "string", "Sample")),
    ("text-after-nul", pair("IFD0", 272, "Box\0hidden\0", "string", "Box")),
    ("copyright-of-two", pair("IFD0", 33432, "One \0Two\0", "string", "One\nTwo")),
    ("text-not-utf8", pair("IFD0", 315, "W\xf6rd\0", "string", "base64:V/ZyZA==")),
    ("no-text", pair("IFD0", 270, None, "string", "")),
    ("undefined-bytes", pair(EXIF, 36864, [48, 50, 51, 50], "undef", "0232")),
    ("encoded-text", pair(EXIF, 37510, [*b"ASCII\0\0\0hi"], "undef", "hi")),
    ("encoded-text", pair(EXIF, 37510, [*b"UNICODE\0", 3, 192], "undef", "\u03c0")),
    ("encoded-text", pair(GPS, 27, [*b"\0\0\0\0\0\0\0\0GPS "], "undef", "GPS")),
    ("wide-text", pair("IFD0", 40091, [192, 3, 0, 0], "int8u", "\u03c0")),
    ("colour-filter", pair(EXIF, 41730, [0, 2, 0, 1, 1, 2], "undef", "2 1 1 2")),
    ("colour-filter", pair(EXIF, 41730, [2, 0, 1, 0, 1, 2], "undef", "2 1 1 2")),
    ("zero-denominator", pair(EXIF, 33437, None, "rational64u", "undef",
                              warnings=by_zero("FNumber"))),
    ("zero-denominator", pair(EXIF, 42034, [18, 55, None, None], "rational64u",
                              "18 55 undef inf", warnings=by_zero(""))),
    ("logarithm", pair(EXIF, 37377, 7, "rational64s", "0.0078125")),
    ("logarithm", pair(EXIF, 37378, 3, "rational64u", "2.8284271247")),
    ("degrees-in-parts", pair(GPS, 2, [48, 51, 36], "rational64u", "48.86")),
    ("time-in-parts", pair(GPS, 7, [9, 5, 7.5], "rational64u", "09:05:07.5")),
    ("position-in-file", pair("IFD0", 273, [100, 200], "int32u", "112 212",
                              segment=TWO_SEGMENTS)),
    ("joined-segments", pair("IFD0", 305, "ab\xff\xe1\0", "string", "abcd",
                             segment=TWO_SEGMENTS)),
    ("cut-segment", pair(EXIF, 33437, 2.8, segment=CUT_NEXT, shown_warnings=FORMAT_ERROR)),
    ("beyond-segment", pair(EXIF, 33437, 2.8, shown_warnings=("Bad offset for ExifIFD FNumber",))),
    ("block", pair(EXIF, 37500, [1, 2, 3, 254])),
    ("empty-title", pair("IFD0", 50898, [0, 0])),
]

# Of each class: what is nearly a member, but wrong on one of the sides.
NEAR_MISSES = [
    ("word-for-code", pair("IFD0", 296, "Inch", "int16u", "3")),
    ("word-for-code", pair("IFD0", 317, "Unknown", "int16u", "9")),
    ("word-for-code", pair("IFD0", 290, 0.01, "int16u", "3")),
    ("word-for-code", pair("IFD0", 339, ["Unsigned integer"] * 2, "int16u", "1 2")),
    ("word-for-code", pair(EXIF, 37383, "Inch", "int16u", "2")),
    ("padded-text", pair("IFD0", 271, "Sample x\0", "string", "Sample")),
    ("padded-text", pair("IFD0", 271, "Sampl", "string", "Sample")),
    ("text-after-nul", pair("IFD0", 272, "Bog\0hidden\0", "string", "Box")),
    ("copyright-of-two", pair("IFD0", 33432, "One\0Too\0", "string", "One\nTwo")),
    ("copyright-of-two", pair("IFD0", 315, "One\0Two\0", "string", "One\nTwo")),
    ("text-not-utf8", pair("IFD0", 315, "Word\0", "string", "base64:V/ZyZA==")),
    ("no-text", pair("IFD0", 270, None, "string", "x")),
    ("no-text", pair("IFD0", 274, None, "int16u", "")),
    ("undefined-bytes", pair(EXIF, 36864, [48, 50, 51, 49], "undef", "0232")),
    ("undefined-bytes", pair(EXIF, 36864, [48, 50, 51, 50], "string", "0232")),
    ("encoded-text", pair(EXIF, 37510, [*b"ASCII\0\0\0ho"], "undef", "hi")),
    ("encoded-text", pair(EXIF, 37510, [*b"OTHER\0\0\0hi"], "undef", "hi")),
    ("wide-text", pair("IFD0", 40091, [193, 3, 0, 0], "int8u", "\u03c0")),
    ("wide-text", pair("IFD0", 40090, [192, 3, 0, 0], "int8u", "\u03c0")),
    ("colour-filter", pair(EXIF, 41730, [0, 2, 0, 1, 1, 1], "undef", "2 1 1 2")),
    ("zero-denominator", pair(EXIF, 33437, None, "rational64u", "undef")),
    ("zero-denominator", pair(EXIF, 33437, None, "rational64u", "undef",
                              warnings=by_zero("ExposureTime"))),
    ("zero-denominator", pair(EXIF, 33437, None, "rational64u", "2.8",
                              warnings=by_zero("FNumber"))),
    ("zero-denominator", pair(EXIF, 42034, [18, 56, None, None], "rational64u",
                              "18 55 undef inf", warnings=by_zero(""))),
    ("logarithm", pair(EXIF, 37377, 7, "rational64s", "0.0078126")),
    ("logarithm", pair(EXIF, 33437, 3, "rational64u", "2.8284271247")),
    ("degrees-in-parts", pair(GPS, 2, [48, 51, 37], "rational64u", "48.86")),
    ("degrees-in-parts", pair(GPS, 6, [48, 51, 36], "rational64u", "48.86")),
    ("time-in-parts", pair(GPS, 7, [9, 5, 8], "rational64u", "09:05:07")),
    ("time-in-parts", pair(GPS, 7, [9, 5, 7], "rational64u", "9:5:7")),
    ("position-in-file", pair("IFD0", 273, [100, 200], "int32u", "112 211",
                              segment=TWO_SEGMENTS)),
    ("position-in-file", pair("IFD0", 279, [100, 200], "int32u", "112 212",
                              segment=TWO_SEGMENTS)),
    ("joined-segments", pair("IFD0", 305, "ab\xff\xe1\0", "string", "abcx",
                             segment=TWO_SEGMENTS)),
    ("joined-segments", pair("IFD0", 305, "ab\xff\xe2\0", "string", "abcd",
                             segment=OTHER_NEXT)),
    ("cut-segment", pair(EXIF, 33437, 2.8, segment=CUT_NEXT)),
    ("cut-segment", pair(EXIF, 33437, 2.8, segment=TWO_SEGMENTS, shown_warnings=FORMAT_ERROR)),
    ("beyond-segment", pair(EXIF, 33437, 2.8, shown_warnings=("Bad offset for IFD0 FNumber",))),
    ("block", pair(EXIF, 37501, [1, 2, 3, 254])),
    ("block", pair(GPS, 37500, [1, 2, 3, 254])),
    ("empty-title", pair("IFD0", 50898, [0, 1])),
]

AGREEING = [
    pair("IFD0", 271, "Sample\0", "string", "Sample"),
    pair("IFD0", 270, "133", "string", "133"),
    pair(EXIF, 41730, [1, 2], "undef", "1 2"),
    pair(EXIF, 33434, 1 / 3, "rational64u", "0.3333333333"),
    pair(EXIF, 37510, [1, 254], "undef", "base64:Af4="),
]

DISAGREEING = [
    pair("IFD0", 271, "Sample", "string", "Samples"),
    pair("IFD0", 305, "8.0\0", "string", "8"),
    pair(EXIF, 33434, 0.33334, "rational64u", "0.3333333333"),
    pair(EXIF, 34855, 200, "int16u", "201"),
    pair(EXIF, 34855, [200, 0], "int16u", "200"),
    pair(EXIF, 34855, None, "int16u", "200"),
    pair(EXIF, 34855, 200),
]


@pytest.mark.parametrize("name, member", MEMBERS)
def test_a_class_takes_in_its_differences(name, member):
    assert not agree(member)
    assert class_of(member) == name


@pytest.mark.parametrize("name, near_miss", NEAR_MISSES)
def test_no_class_takes_in_what_is_wrong(name, near_miss):
    assert not agree(near_miss)
    assert class_of(near_miss) is None


def test_every_class_has_members_and_near_misses():
    assert {name for name, _ in MEMBERS} == set(CLASSES)
    assert {name for name, _ in NEAR_MISSES} == set(CLASSES)


@pytest.mark.parametrize("same", AGREEING)
def test_equal_values_agree(same):
    assert agree(same)


@pytest.mark.parametrize("different", DISAGREEING)
def test_unequal_values_differ_without_a_class(different):
    assert not agree(different)
    assert class_of(different) is None


def test_the_text_of_a_quotient_by_zero_needs_its_warning():
    member = next(member for name, member in MEMBERS if name == "zero-denominator")
    assert class_of(dataclasses.replace(member, warnings=())) is None


def test_the_document_explains_every_class_and_no_other():
    document = pathlib.Path(__file__).resolve().parents[2] / "docs" / "interop.md"
    explained = re.findall(r"^### `(.*)`$", document.read_text(), re.MULTILINE)
    assert sorted(explained) == sorted([*CLASSES, REPEATED])
