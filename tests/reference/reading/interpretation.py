"""What the values of a few tags mean."""

from tag_vocabulary import MULTIPLIERS, WORDS

from .host import Recoverable

IMAGE, GPS, INTEROPERABILITY, EXIF = 0, 1, 2, 3

OUT_OF_RANGE = -2147483648  # No table has this code.


def truncated(number):
    """Toward zero, to a signed 32-bit integer."""
    if not -2147483649.0 < number < 2147483648.0:  # NaN is in no range.
        return OUT_OF_RANGE
    return int(number)


def interpret(tag):
    if tag.ifd_id in (GPS, INTEROPERABILITY):
        return
    if tag.id in WORDS:
        words, otherwise = WORDS[tag.id]
        if tag.values:
            tag.word = words.get(tag.first_code(), otherwise)
    elif tag.id == 270:
        tag.text = tag.text[:-1]
    elif tag.id in MULTIPLIERS:
        multiply(tag, *MULTIPLIERS[tag.id])
    elif tag.id == 700:
        tag.word = "".join(chr(truncated(value) & 255) for value in tag.values)
    elif tag.id == 34675:
        tag.values = [tag.offset]


def multiply(tag, multipliers, otherwise):
    if not tag.values:
        return
    code = tag.first_code()
    if code in multipliers:
        tag.values[0] = multipliers[code]
    else:
        tag.word = otherwise


def check_nesting(tag):
    places = {GPS: ("Gps", "GPS"), INTEROPERABILITY: ("Iop", "Interoperability")}
    if tag.ifd_id in places:
        name, label = places[tag.ifd_id]
        raise Recoverable(
            f"ZEPHRA:veltrace:TiffTag:illegallyNestedIfdWithin{name}Ifd",
            f"Tag id # {tag.id} is illegal within the {label} subIFD.  "
            "There may have been some loss of metadata.\n",
        )
