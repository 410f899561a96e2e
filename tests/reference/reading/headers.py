"""TIFF and BigTIFF headers. Whatever is wrong with one is fatal."""

from .host import Fatal
from .reader import BIG, signed

MAY_BE_CORRUPT = "the image may be corrupt."


def read_header(reader):
    """Leaves the reader at the first directory."""
    reader.base = reader.position
    read_byte_order(reader)
    prefix = "ZEPHRA:veltrace:bigTiff:" if reader.format == BIG else "ZEPHRA:veltrace:"
    reader.version = take(
        reader,
        2,
        prefix + "badTiffHeaderVersionRead",
        "Could not read TIFF header version number, ",
    )
    if reader.format == BIG:
        identifier = prefix + "badOffsetSizeRead"
        take(reader, 2, identifier, "Could not read offset size in the TIFF header, ")
        take(reader, 2, identifier, "Could not read Big TIFF header padding, ")
    offset = take(
        reader,
        reader.offset_size,
        prefix + "badTiffHeaderOffsetRead",
        "Could not read the location of the first TIFF tag table, ",
    )
    go_to_first_directory(reader, signed(reader.base + offset, 64), prefix)


def take(reader, size, identifier, text):
    number = reader.take_number(size)
    if number is None:
        raise Fatal(identifier, text + MAY_BE_CORRUPT)
    return number


def read_byte_order(reader):
    mark = reader.take(2)
    if mark is None:
        raise Fatal(
            "ZEPHRA:veltrace:tiffHeaderEndianReadFailure",
            f"Could not read TIFF header byte order the image file {reader.quoted}may be corrupt.",
        )
    reader.mark = mark
    if mark == b"II":
        reader.order = "<"
    elif mark == b"MM":
        reader.order = ">"
    else:
        raise Fatal(
            "ZEPHRA:veltrace:badEndianness",
            f"The endian signature [{mark[0]} {mark[1]}] of {reader.quoted}"
            " is neither [77 77] (big-endian) nor [73 73] (little-endian),"
            "the image file may be corrupt.",
        )


def go_to_first_directory(reader, position, prefix):
    if position > reader.size:
        raise Fatal(
            prefix + "badTiffIfdOffset",
            "The indicated starting byte of the first image file directory "
            f"({position}) exceeds the image file size ({reader.size}), {MAY_BE_CORRUPT}",
        )
    if not reader.seek(signed(position, 32)):
        raise Fatal(
            prefix + "badTiffHeaderIfdOffset",
            "Could not seek to position specified by TIFF header offset pointer, "
            f" {MAY_BE_CORRUPT}\n",
        )
