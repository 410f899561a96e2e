"""Files that are expensive to read, little-endian."""

import struct

from tiff_bytes import EXIF, LONG, broken, directory, image, pointer, short

STRIP_OFFSETS, ORIENTATION, PAGE_NUMBER, SUB_IFDS = 273, 274, 297, 330
HEADER = b"II*\0" + struct.pack("<I", 8)
FALLBACKS = 22  # fields that an image directory has without any entry


def linked(next_at, *entries):
    """A directory that is followed by the one at `next_at`."""
    return directory(*entries)[:-4] + struct.pack("<I", next_at)


def cycle(length):
    """Directories of which the last is followed by the first."""
    size = len(linked(0, short(ORIENTATION, 1)))
    following = [8 + size * ((number + 1) % length) for number in range(length)]
    return HEADER + b"".join(linked(at, short(ORIENTATION, 1)) for at in following)


def sub_chain_cycle():
    """An image whose sub-image is followed by itself."""
    image = directory(pointer(SUB_IFDS, 26))
    assert 8 + len(image) == 26
    return HEADER + image + linked(26, short(ORIENTATION, 1))


def endless_at_constant_memory():
    """A directory that is followed by itself. The number of its fields has 16 bits: 65,536 are 0, and
    a directory without fields is dropped."""
    page_number = struct.pack("<HHII", PAGE_NUMBER, LONG, 1, 1)
    return HEADER + linked(8, *[page_number] * (65_536 - FALLBACKS))


def binary_tree(levels):
    """Each directory has two pointers to one of the next level, which is read as many times as
    there are ways to it."""
    size = len(directory(pointer(EXIF, 0), pointer(EXIF, 0)))
    below = [8 + size * (level + 1) for level in range(levels)]
    forks = (directory(pointer(EXIF, at), pointer(EXIF, at)) for at in below)
    return HEADER + b"".join(forks) + directory(short(37385, 1))


def large_array(count, start):
    """An image with an array of `count` numbers of seven digits from `start` on."""
    def with_array_at(offset):
        return image(struct.pack("<HHII", STRIP_OFFSETS, LONG, count, offset))

    numbers = range(1_000_000 + start, 1_000_000 + start + count)
    return with_array_at(len(with_array_at(0))) + struct.pack(f"<{count}I", *numbers)


def bad_entries():
    """As many entries as a directory can have, all invalid."""
    return HEADER + directory(*[broken(ORIENTATION)] * 65_535)


def sparse(write_to, content, at, size):
    """Makes the file `write_to` of `size` bytes, all zero except the `content` at an offset
    and a header that points there."""
    with open(write_to, "wb") as file:
        file.write(b"II*\0" + struct.pack("<I", at))
        file.seek(at)
        file.write(content)
        file.truncate(size)
