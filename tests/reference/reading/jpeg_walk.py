"""The marker segments of a JPEG file, up to the first APP1."""

from .headers import read_header
from .host import Fatal

SOS, DQT, APP1 = 218, 219, 225


def walk_to_exif(reader, host):
    """Leaves the reader at the first directory of the Exif block; False when none is reached."""
    read_signature(reader)
    while True:
        code, length = read_marker(reader)
        if code in (SOS, DQT):
            return False
        if code == APP1:
            read_exif_header(reader, host)
            return True
        if not reader.seek(reader.position + length - 2):
            raise corrupt(
                reader, "badJpegSectionSeek", "Could not read past one of the JPEG data sections"
            )


def corrupt(reader, name, text):
    return Fatal(
        f"ZEPHRA:veltrace:{name}", f"{text}, the image file {reader.quoted}may be corrupt."
    )


def read_signature(reader):
    signature = reader.take(2)
    if signature is None:
        raise Fatal(
            "ZEPHRA:veltrace:JpegTagFile:fileSignatureReadFailure",
            "Unable to read the first two bytes of the file. "
            f"{reader.quoted}is probably corrupt.\n",
        )
    if signature[0] != 255 and signature[1] != 216:
        raise Fatal(
            "ZEPHRA:veltrace:JpegTagFile:fileSignatureVerificationFailure",
            "The first two bytes of a JPEG file should be [255 216], and the first two bytes of "
            f"this file are [{chr(signature[0])}, {chr(signature[1])}].\n",
        )


def read_marker(reader):
    marker = reader.take(2)
    if marker is None:
        raise corrupt(reader, "jpegMarkerReadFailure", "Could not read one of the JPEG markers")
    if marker[0] != 255:
        raise corrupt(
            reader,
            "invalidJpegMarker",
            f"Encountered {marker[0]} instead of the expected value of 255 for a JPEG marker",
        )
    high = read_length_byte(reader, "high")
    return marker[1], 256 * high + read_length_byte(reader, "low")


def read_length_byte(reader, which):
    number = reader.take_number(1)
    if number is None:
        raise corrupt(
            reader,
            f"{which}OrderByteSectionSizeReadFailure",
            f"Could not read the {which} order byte of the JPEG section size",
        )
    return number


def read_exif_header(reader, host):
    identifier = reader.take(6)
    if identifier is None:
        raise corrupt(reader, "badJpegExifHeaderRead", "Unable to read the JPEG Exif header")
    if identifier[:4] != b"Exif":
        shown = identifier.split(b"\0")[0].decode("latin-1")
        host.warn(
            "ZEPHRA:veltrace:badJpegExifHeaderValue",
            f'The JPEG Exif header reads as "{shown}" instead of "Exif  ", '
            f"the image file {reader.quoted}may be corrupt.",
        )
    read_header(reader)
