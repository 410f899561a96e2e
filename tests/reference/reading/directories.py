"""Directories, and chains of them."""

import dataclasses

from .defaults import default_tags
from .entries import read_entry
from .host import Fatal, Recoverable
from .reader import JPEG, signed

IMAGE, GPS, INTEROPERABILITY, EXIF = 0, 1, 2, 3

LARGEST_JPEG_TABLE = 65536

# The baseline tags whose presence in a directory is noted.
NOTED = frozenset(
    [254, 258, 259, 263, 266, 273, 274, 277, 278, 279, 280, 281, 282, 283, 284, 290, 296, 320]
    + [322, 323, 324, 325]
)


class Directory:
    """One directory: its tags, and what the output needs to know of the image."""

    def __init__(self, ifd_id, position):
        self.ifd_id = ifd_id
        self.position = position
        self.table_size = 0
        self.known = []
        self.unknown = []
        self.width = 0.0
        self.height = 0.0
        self.present = set()
        self.photometric = -1
        self.bits_per_sample = []
        self.sample_count = 1

    def number_of_fields(self):
        return (len(self.known) + bool(self.unknown)) % 65536

    def note(self, tag):
        if tag.id in NOTED:
            self.present.add(tag.id)
        if tag.id == 258:
            self.bits_per_sample = list(tag.values)
        elif tag.id == 262 and tag.values:
            self.photometric = tag.first_code()
        elif tag.id == 277:
            self.sample_count = len(tag.values)

    def keep(self, tag):
        """Width and height are kept as facts, not as tags."""
        if tag.id == 256:
            self.width = tag.values[0] if tag.values else self.width
        elif tag.id == 257:
            self.height = tag.values[0] if tag.values else self.height
        else:
            (self.known if tag.name else self.unknown).append(tag)


@dataclasses.dataclass
class Chain:
    ifd_id: int
    directories: list
    names: dict  # By tag, of all known tags.
    has_unknown: bool = False


def read_chain(reader, host, ifd_id):
    """The chain that begins at the reader's position. Any directory that cannot be read costs all
    of them."""
    chain = Chain(ifd_id, [], {})
    while True:
        directory = read_directory(reader, host, ifd_id)
        if directory.number_of_fields():
            chain.directories.append(directory)
            chain.names.update((tag.id, tag.name) for tag in directory.known)
            chain.has_unknown |= bool(directory.unknown)
        if ifd_id != IMAGE or reader.format == JPEG:
            return chain
        if not go_to_next(reader, host, directory):
            return chain


def go_to_next(reader, host, directory):
    pointer = signed(directory.position + reader.count_size + directory.table_size, 32)
    if not reader.seek(pointer):
        host.warn(
            "ZEPHRA:veltrace:IFDSet:badNextIfdPointer",
            "Could not seek to the next image file directory pointer, "
            f"the image file {reader.quoted}is probably corrupt.",
        )
        return False
    following = reader.take_number(reader.offset_size)
    if following is None:
        host.warn(
            "ZEPHRA:veltrace:TagFile:nextIfdOffsetReadError",
            f"Unable to read the offset value at byte position {pointer} to a following image file "
            f"directory, the metadata in {reader.quoted}may be corrupt.",
        )
        return False
    if following == 0:
        return False
    position = signed(reader.base + following, 64)
    if position > reader.size:
        host.warn(
            "ZEPHRA:veltrace:badNextIfdPointer",
            "The pointer to a secondary IFD exceeds the size of "
            f"the image file {reader.quoted}and therefore cannot be valid.  Some "
            "metadata might not be returned. ",
        )
        return False
    if not reader.seek(position):
        host.warn(
            "ZEPHRA:veltrace:badNextIfdPointer",
            "Could not seek to the next image file directory, some metadata in "
            f"the image file {reader.quoted}might not have been retrieved.",
        )
        return False
    return True


def read_directory(reader, host, ifd_id):
    directory = Directory(ifd_id, reader.position)
    count = read_count(reader, ifd_id)
    table = read_table(reader, host, directory, count)
    for start in range(0, len(table), reader.entry_size):
        try:
            entry = table[start : start + reader.entry_size]
            tag = read_entry(reader, host, entry, ifd_id, read_chain)
        except Recoverable as failure:
            host.warn(failure.identifier, failure.text)
            continue
        directory.note(tag)
        directory.keep(tag)
    if ifd_id == IMAGE and reader.format != JPEG:
        directory.known += default_tags(directory)
    return directory


def read_count(reader, ifd_id):
    """Of a wider count in the file only the low 32 bits are kept."""
    count = reader.take_number(reader.count_size)
    if count is None:
        failure = Fatal if ifd_id == IMAGE else Recoverable
        raise failure(
            "ZEPHRA:veltrace:numIfdEntriesReadError",
            "Unable to read the number of entries in one of the image file directories, "
            f"the metadata in {reader.quoted}may be corrupt.",
        )
    return count & 0xFFFFFFFF


def read_table(reader, host, directory, count):
    full_size = count * reader.entry_size
    size = full_size & 0xFFFFFFFF
    directory.table_size = size
    if size == 0:
        raise Recoverable(
            "ZEPHRA:veltrace:zeroLengthIfdTable",
            f"The image file directory at byte position {directory.position} has zero entries and "
            "is being ignored.",
        )
    if size > LARGEST_JPEG_TABLE and reader.format == JPEG:
        kind = {IMAGE: "", GPS: "GPS ", INTEROPERABILITY: "interoperability ", EXIF: "Exif "}
        raise Recoverable(
            "ZEPHRA:veltrace:jpegApp1MaximumLengthExceeded",
            f"The {kind[directory.ifd_id]} image file directory at byte position "
            f"{directory.position} claims to have {count} entries, which will exceed the maximum "
            "allowed size (64KB) of the APP1 segment specified by the JPEG standard.  This IFD is "
            "being ignored.",
        )
    if not host.grants_block(size):
        raise Recoverable(
            "ZEPHRA:veltrace:badRawIfdBufferMemoryAllocation",
            f"Could not allocate {size} bytes required for the IFD table.",
        )
    table = reader.take(size) if size == full_size else None
    if table is None:
        raise Recoverable("ZEPHRA:veltrace:badRawIfdRead", short_table_text(directory.ifd_id))
    return table


def short_table_text(ifd_id):
    table = {
        IMAGE: "IFD table #0",
        GPS: "the GPSInfo sub IFD table",
        INTEROPERABILITY: "the Interoperability sub IFD table",
        EXIF: "the Exif sub IFD table",
    }[ifd_id]
    return (
        f"Could not read {table} into memory, some of the metadata in the image file may be "
        "corrupt.\n"
    )
