"""One directory entry: its value, as numbers or text, or the directories it points to."""

import struct

from .dictionary import name_of
from .host import Recoverable
from .interpretation import check_nesting, interpret, truncated

ASCII, RATIONAL, SIGNED_RATIONAL, IFD = 2, 5, 10, 13

SIZES = [0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4]
# What struct calls the elements; of rationals, their halves.
LETTERS = {1: "B", 3: "H", 4: "I", 5: "I", 6: "b", 7: "B", 8: "h", 9: "i", 10: "i"}
LETTERS |= {11: "f", 12: "d"}

# By pointer tag: its directory's kind, and its word in messages.
POINTERS = {330: (0, "generic"), 34665: (3, "Exif"), 34853: (1, "GPS"), 40965: (2, "IOP")}


class Tag:
    """`values` are the numbers as reported, `text` the bytes of a text, each as a character;
    `word`, when there is one, is reported instead of both."""

    def __init__(self, tag_id, ifd_id, values=()):
        self.id = tag_id
        self.ifd_id = ifd_id
        self.name = name_of(tag_id, ifd_id)
        self.offset = 0
        self.values = list(values)
        self.text = ""
        self.word = ""
        self.chain = None

    def first_code(self):
        return truncated(self.values[0])


def read_entry(reader, host, entry, ifd_id, read_chain):
    """Raises Recoverable when the entry cannot be read. The fields lie where a classic entry has
    them, in BigTIFF as well; only the inline value does not."""
    tag_id, data_type, count, field = struct.unpack_from(reader.order + "HHII", entry)
    tag = Tag(tag_id, ifd_id)
    check_type(tag_id, data_type)
    byte_size = count * SIZES[data_type]
    ask_for_block(host, tag_id, byte_size)
    if tag_id in POINTERS:
        tag.offset = field
        read_sub_directory(reader, host, tag, read_chain)
        return tag
    value = read_value(reader, tag, entry, field, byte_size)
    decode(reader, host, tag, data_type, count, value)
    interpret(tag)
    return tag


def check_type(tag_id, data_type):
    if data_type == 0:
        raise Recoverable(
            "ZEPHRA:veltrace:TiffTag:noTypeFormatId",
            f'Tag ID {tag_id} has datatype format "TIFF_NOTYPE" and cannot be processed.\n',
        )
    if data_type >= len(SIZES):
        raise Recoverable(
            "ZEPHRA:veltrace:badTagFormat",
            f"Tag ID {tag_id} with datatype format value {data_type} is invalid.  "
            "Only values 0-13 are allowed.\n",
        )


def ask_for_block(host, tag_id, byte_size):
    """Only the low 32 bits of the size are asked for. A value that needs more fails all the same,
    but a pointer has no value to hold."""
    granted = host.grants_block(byte_size & 0xFFFFFFFF)
    too_large = byte_size >> 32 and tag_id not in POINTERS
    if (not granted and byte_size) or too_large:
        raise Recoverable(
            "ZEPHRA:veltrace:TagFile:failedMemoryAllocation",
            f"Unable to allocate {byte_size} to hold tag data for tag ID {tag_id}\n",
        )


def read_value(reader, tag, entry, field, byte_size):
    if byte_size <= reader.offset_size:
        start = reader.entry_size - reader.offset_size
        return entry[start : start + byte_size]
    tag.offset = field
    position = reader.base + field
    if not reader.seek(position):
        raise Recoverable(
            "ZEPHRA:veltrace:TiffTag:badTagDataOffsetSeek",
            f"Could not seek to data for tag with ID {tag.id}, the image may be corrupt.",
        )
    value = reader.take(byte_size)
    if value is None:
        subject = f'TIFF tag "{tag.name}" value' if tag.name else f"value for TIFF tag #{tag.id}"
        raise Recoverable(
            "ZEPHRA:veltrace:badTiffTagOffsetDataRead",
            f"Unable to read {subject} from byte location {position}.",
        )
    return value


def decode(reader, host, tag, data_type, count, value):
    if data_type == ASCII:
        tag.text = value.decode("latin-1")
    elif data_type == IFD:
        raise Recoverable(
            "ZEPHRA:veltrace:TiffTag:unrecognizedIfd",
            f"Tag {tag.id} has an unrecognized TIFF_IFD data format.\n",
        )
    elif data_type in (RATIONAL, SIGNED_RATIONAL):
        words = struct.unpack(f"{reader.order}{2 * count}{LETTERS[data_type]}", value)
        kind = "rational" if data_type == RATIONAL else "signedRational"
        tag.values = quotients(host, tag, words, kind)
    else:
        tag.values = list(struct.unpack(f"{reader.order}{count}{LETTERS[data_type]}", value))


def quotients(host, tag, words, kind):
    values = [
        float(numerator) / float(denominator) if denominator else float("nan")
        for numerator, denominator in zip(words[::2], words[1::2])
    ]
    if 0 in words[1::2]:
        host.warn(
            f"ZEPHRA:veltrace:{kind}:badTagValueDivisionByZero",
            f'The computation of the tag value for "{tag.name}" involves division by zero.  '
            "The value has been set to NaN.",
        )
    return values


def read_sub_directory(reader, host, tag, read_chain):
    ifd_id, word = POINTERS[tag.id]
    before = reader.position
    if not reader.seek(reader.base + tag.offset):
        raise Recoverable(
            "ZEPHRA:veltrace:TiffTag:badSubIfdSeek",
            f"Could not seek to start of {word} sub IFD\n",
        )
    check_nesting(tag)
    tag.chain = read_chain(reader, host, ifd_id)
    reader.position = before
