"""The classes of difference between what the module reports of an entry and what ExifTool shows.

A class is a rule that holds for its differences and for nothing else: it works out from the one
side what the other must be. docs/interop.md explains each to readers.
"""

import codecs
import dataclasses
import math
import re
import struct

from exif_segment import ExifSegment
from readers import Shown
from shown_values import are_close, binary, is_close, numbers_in
from vocabulary import REPLACEMENTS, as_list, names_of, words_for

CLASSES = {}


@dataclasses.dataclass
class Pair:
    """One entry, as each side has it. `reported` is None for an empty or missing field, `shown`
    for an entry that ExifTool leaves out."""

    place: str
    tag: int
    reported: object
    shown: Shown | None
    segment: ExifSegment | None = None
    warnings: tuple = ()  # The module's, by text.
    shown_warnings: tuple = ()

    @property
    def name(self):
        return names_of(self.place).get(self.tag, "")

    @property
    def text(self):
        return self.shown.text

    def is_main(self):
        """Whether the tag is one of those that image and Exif directories share."""
        return self.place in ("IFD0", "ExifIFD")

    def is_text(self):
        return isinstance(self.reported, str)

    def numbers(self):
        """The reported numbers; nothing if there are none."""
        values = as_list(self.reported)
        return values if all(isinstance(v, (int, float)) or v is None for v in values) else []

    def data(self):
        """The reported numbers as bytes, if they are bytes."""
        values = self.numbers()
        return bytes(values) if all(v in range(256) for v in values) else b""


def agree(pair):
    """Whether both sides have the same value. A text may end in the one NUL of its type; quotients
    and fractions may be rounded as ExifTool prints them."""
    if pair.reported is None or pair.shown is None:
        return False
    if pair.is_text():
        return pair.shown.format == "string" and pair.text in (
            pair.reported, pair.reported.removesuffix("\0"))
    return None not in pair.numbers() and are_close(pair.numbers(), numbers_in(pair.text))


def class_of(pair):
    """The name of the first class that the pair belongs to, or None."""
    one_sided = pair.reported is None or pair.shown is None
    for name, (rule, is_of_values) in CLASSES.items():
        if not (one_sided and is_of_values) and rule(pair):
            return name
    return None


def of_values(rule):
    """Registers the rule of a class of entries that both sides have."""
    CLASSES[rule.__name__.replace("_", "-")] = rule, True
    return rule


def of_presence(rule):
    """Registers the rule of a class of entries that one side may lack."""
    CLASSES[rule.__name__.replace("_", "-")] = rule, False
    return rule


@of_values
def word_for_code(pair):
    codes = numbers_in(pair.text)
    return pair.name in REPLACEMENTS and bool(codes) and (
        pair.reported == words_for(pair.name, codes))


# Texts

def characters_of_bytes(error):
    return "".join(map(chr, error.object[error.start:error.end])), error.end


codecs.register_error("characters_of_bytes", characters_of_bytes)


def starts_with_text(reported, text):
    """Whether only NULs and blanks follow the text."""
    return reported.startswith(text) and not reported.removeprefix(text).strip(" \0")


@of_values
def padded_text(pair):
    return pair.is_text() and starts_with_text(pair.reported, pair.text)


@of_values
def text_after_nul(pair):
    if not pair.is_text():
        return False
    start, _, rest = pair.reported.partition("\0")
    return start == pair.text and rest.strip(" \0") != ""


@of_values
def copyright_of_two(pair):
    if pair.name != "Copyright" or not pair.is_text():
        return False
    photographer, _, rest = pair.reported.partition("\0")
    editor = rest.partition("\0")[0].rstrip(" ")
    return editor != "" and pair.text == photographer.rstrip(" ") + "\n" + editor


@of_values
def text_not_utf8(pair):
    data = binary(pair.text)
    return data is not None and pair.is_text() and (
        starts_with_text(pair.reported, data.decode("utf-8", "characters_of_bytes")))


@of_presence
def no_text(pair):
    """A value of no bytes, or the description's NUL alone, which the module takes off."""
    return pair.reported is None and pair.shown.format == "string" and pair.text == ""


# Bytes that ExifTool reads as something else

@of_values
def undefined_bytes(pair):
    return pair.shown.format == "undef" and pair.data() != b"" and (
        pair.data().rstrip(b"\0") == pair.text.encode().rstrip(b"\0"))


# Texts after eight bytes that name their encoding.
ENCODED_TEXTS = {"UserComment", "GPSProcessingMethod", "GPSAreaInformation"}
ENCODINGS = {b"ASCII\0\0\0": ["ascii"], b"UNICODE\0": ["utf-16-le", "utf-16-be"],
             b"\0" * 8: ["ascii"]}


@of_values
def encoded_text(pair):
    data = pair.data()
    return pair.name in ENCODED_TEXTS and any(
        data[8:].decode(encoding, "replace").rstrip(" \0") == pair.text
        for encoding in ENCODINGS.get(data[:8], []))


# Texts of a desktop system, in bytes: title, comment, author, keywords, subject.
WIDE_TEXTS = range(40091, 40096)


@of_values
def wide_text(pair):
    return pair.tag in WIDE_TEXTS and pair.is_main() and pair.data() != b"" and (
        pair.data().decode("utf-16-le", "replace").rstrip("\0") == pair.text)


@of_values
def colour_filter(pair):
    """Two sizes of two bytes, in either order, and a byte for each place of the filter."""
    data = pair.data()
    if pair.name != "CFAPattern" or len(data) < 4:
        return False
    expected = [[*struct.unpack(order + "HH", data[:4]), *data[4:]] for order in "<>"]
    return numbers_in(pair.text) in expected


# Numbers

@of_presence
def zero_denominator(pair):
    """JSON has null for NaN, which a warning distinguishes from an empty field."""
    if pair.shown is None or not pair.shown.format.startswith("rational"):
        return False
    numbers = numbers_in(pair.text) or []
    start = f'The computation of the tag value for "{pair.name}" involves division by zero.'
    return (None in numbers and are_close(as_list(pair.reported), numbers)
            and any(warning.startswith(start) for warning in pair.warnings))


# Logarithms to the base of two, that ExifTool turns into seconds and apertures.
LOGARITHMS = {
    "ShutterSpeedValue": lambda value: power_of_two(-value) if abs(value) < 100 else 0,
    "ApertureValue": lambda value: power_of_two(value / 2),
    "MaxApertureValue": lambda value: power_of_two(value / 2),
}


def power_of_two(exponent):
    return 2 ** exponent if exponent < 1024 else math.inf


@of_values
def logarithm(pair):
    values = pair.numbers()
    return pair.name in LOGARITHMS and len(values) == 1 and values[0] is not None and (
        are_close([LOGARITHMS[pair.name](values[0])], numbers_in(pair.text)))


ANGLES = {"GPSLatitude", "GPSLongitude", "GPSDestLatitude", "GPSDestLongitude"}


def degrees(values):
    return sum(value / 60 ** i for i, value in enumerate(values))


@of_values
def degrees_in_parts(pair):
    values = pair.numbers()
    return (pair.name in ANGLES and len(values) == 3 and None not in values
            and are_close([degrees(values)], numbers_in(pair.text)))


@of_values
def time_in_parts(pair):
    """ExifTool carries seconds of sixty and more into the minutes, and so on."""
    values, parts = pair.numbers(), pair.text.split(":")
    return (pair.name == "GPSTimeStamp" and len(values) == len(parts) == 3 and None not in values
            and all(re.fullmatch(r"\d\d(\.\d+)?", part) for part in parts)
            and is_close(degrees(values), degrees(map(float, parts))))


# Positions of strips, tiles and thumbnails.
POSITIONS = {273, 324, 513}


@of_values
def position_in_file(pair):
    """ExifTool adds the place of the TIFF header, from which the file counts."""
    return (pair.tag in POSITIONS and pair.is_main() and pair.segment is not None
            and bool(pair.numbers()) and None not in pair.numbers()
            and [value + pair.segment.base for value in pair.numbers()] == numbers_in(pair.text))


# Where the file ends too soon

@of_values
def joined_segments(pair):
    """From the end of the segment on, the module reads the marker of the next and its "Exif"."""
    if not pair.is_text() or pair.segment is None:
        return False
    content, end = pair.segment.content, pair.segment.end
    value, text = pair.reported.encode("latin-1", "replace"), pair.text.encode()
    if content[end:end + 2] != b"\xff\xe1" or content[end + 4:end + 10] != b"Exif\0\0":
        return False
    for before in range(1, len(value)):
        joined = content[end - before:end] + content[end + 10:end + 10 + len(value) - before]
        if content[end - before:].startswith(value) and joined.rstrip(b"\0") == text:
            return True
    return False


@of_presence
def cut_segment(pair):
    """ExifTool passes over an Exif segment when the file ends in it or in the segment after it."""
    return (pair.shown is None and pair.segment is not None and pair.segment.is_cut_off()
            and "JPEG format error" in pair.shown_warnings)


@of_presence
def beyond_segment(pair):
    """ExifTool reads no value that lies outside of the Exif segment."""
    return pair.shown is None and f"Bad offset for {pair.place} {pair.name}" in pair.shown_warnings


# Entries that ExifTool shows otherwise

# XMP, IPTC, image resources, colour profile, maker note, print settings, padding.
BLOCKS = {700, 33723, 34377, 34675, 37500, 50341, 59932}


@of_presence
def block(pair):
    return pair.shown is None and pair.tag in BLOCKS and pair.is_main()


# Titles of one maker, which ExifTool leaves out when they are empty.
TITLES = {50898, 50899}


@of_presence
def empty_title(pair):
    return pair.shown is None and pair.tag in TITLES and pair.is_main() and set(pair.data()) == {0}
