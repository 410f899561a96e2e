"""Little-endian classic TIFF files, a few entries at a time."""

import struct

SHORT, ASCII, LONG = 3, 2, 4
WIDTH, HEIGHT, MAKE, MODEL, EXIF = 256, 257, 271, 272, 34665


def short(tag, value):
    return struct.pack("<HHIHH", tag, SHORT, 1, value, 0)


def pointer(tag, offset):
    return struct.pack("<HHII", tag, LONG, 1, offset)


def broken(tag):
    """An entry of a type that does not exist."""
    return struct.pack("<HHII", tag, 99, 1, 0)


def directory(*entries):
    """One directory without a successor; its entries are in ascending order of their tags."""
    return struct.pack("<H", len(entries)) + b"".join(entries) + struct.pack("<I", 0)


def tiff(*entries, texts=()):
    """A file of one directory. `texts` are (tag, bytes) pairs, the bytes longer than four; their
    entries follow `entries`."""
    values_at = 8 + 2 + 12 * (len(entries) + len(texts)) + 4
    values = b""
    for tag, text in texts:
        entries += (struct.pack("<HHII", tag, ASCII, len(text), values_at + len(values)),)
        values += text
    return b"II*\0" + struct.pack("<I", 8) + directory(*entries) + values


def image(*entries, **settings):
    """A file with an image of 5 x 7."""
    return tiff(short(WIDTH, 5), short(HEIGHT, 7), *entries, **settings)


def nested(depth):
    """`depth` Exif directories, each in the one before, the innermost with a flash that fired."""
    size = 2 + 12 + 4
    pointers = (directory(pointer(EXIF, 8 + size * (level + 1))) for level in range(depth))
    return b"II*\0" + struct.pack("<I", 8) + b"".join(pointers) + directory(short(37385, 1))
