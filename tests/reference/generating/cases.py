"""Whole cases: a file's bytes, its name and date, and what the host grants for it."""

import dataclasses
import random

from . import numbers
from .damage import damage_bytes, damage_tree
from .jpeg import jpeg_file, stray_walk
from .sound import directory, sound_file
from .tags import UNNAMED
from .tree import AS_READ, CLASSIC, Directory, Entry, File

SUFFIXES = [b".tif"] * 8 + [b"", b".jpg", b" of two words", b'"quoted"', b"%s%n%100d"]
SUFFIXES += [b"\xff\xfe\xe9", "–é".encode(), b"line\nline", b"back\\slash"]

# Before 1970, before 1901, after 2038, in years of five and eight digits, and beyond what fits.
DATES = [0, -1, 1, 951782399, 2147483648, -2208988800, -62135596801, 253402300800, 3155760000000000]
DATES += [3155692597470000, 67767976233532799, 67768036191676800, 2**62, -(2**62)]

BEGINNINGS = [b"", b"I", b"II*", b"\xff\xd8\xff", b"MM\0\x2b", b"II+\0", b"MM\0*"]

# Around the end of signed 32-bit positions, and near that of unsigned ones.
FAR = [0x7FFFFFF0, 0x7FFFFFFF, 0x80000000, 0x80000001, 0xC0000000, 0xFFF00000]

# Enough for any file without loops. A file with loops is read until it has had them all.
BLOCKS = 500
LARGEST = 1 << 26


@dataclasses.dataclass
class Case:
    """`far` is what lies at a position far behind `content`, with nothing between. No content at
    all: there is no such file."""

    content: bytes | None
    suffix: bytes = b".tif"
    date: int | None = None
    far: tuple | None = None
    block_budget: int = BLOCKS
    largest_block: int = LARGEST


def case(seed, index):
    rng = random.Random(f"{seed}:{index}")
    if index % 4000 == 1999:
        return crowded(rng)
    if index % 300 == 299:
        return far_apart(rng)
    if index % 1000 == 99:
        return Case(None, rng.choice(SUFFIXES))
    chance = rng.random()
    made = Case(content(rng, chance < 0.1), rng.choice(SUFFIXES))
    if rng.random() < 0.06:
        made.date = rng.choice(DATES)
    if chance < 0.1:
        made.largest_block = rng.choice((300, 400, 600, 1000, 1000, 2000, 2000, 4000, 4000))
    elif chance < 0.12:
        made.block_budget = rng.randrange(1, 60)
    return made


def content(rng, many=False):
    """`many`: with values that a host which grants little has room to read, but not to keep."""
    chance = rng.random()
    if chance < 0.02:
        return stray_walk(rng)
    if chance < 0.03:
        return rng.choice(BEGINNINGS) + rng.randbytes(rng.randrange(30))
    jpeg = rng.random() < 0.2
    file = sound_file(rng, jpeg)
    if many:
        for _ in range(rng.randrange(1, 4)):
            rng.choice(LARGE)(rng, file, rng.choice(file.directories()))
    chance = rng.random()
    if chance < 0.55:
        for _ in range(rng.choice((1, 1, 2, 3, 5))):
            damage_tree(rng, file)
    made = file.bytes()
    if chance > 0.96:
        made = made[: rng.randrange(18)]
    if jpeg:
        made = jpeg_file(rng, made)
    if 0.5 < chance < 0.75:
        made = damage_bytes(rng, made)
    return made


def long_value(rng, file, directory):
    tag = rng.choice((305, 320, 339, 320, 339, 258, 34377, rng.choice(UNNAMED)))
    data_type, codes = rng.choice((1, 1, 2, 3)), [1, 2, 3, 4, 5, 6]
    count = rng.randrange(30, 2000)
    value = numbers.value(rng, file.order, data_type, count, codes)
    if tag == 339 or data_type == 2:
        step = numbers.SIZES[data_type]
        value = value[:step] * count
    directory.entries.append(Entry(tag, data_type, count, value))


def many_unnamed(rng, file, directory):
    for _ in range(rng.randrange(15, 90)):
        directory.entries.append(Entry(rng.choice(UNNAMED), 1, 1, b"k"))


LARGE = [long_value, long_value, long_value, many_unnamed]


def far_apart(rng):
    """A directory or a value behind the first 2 GiB."""
    file = sound_file(rng)
    position = rng.choice(FAR)
    far = directory(rng, file.order, "image")
    far.entries = [each for each in far.entries if each.target is None]
    far.position = position
    if rng.random() < 0.4:
        file.first = position
    if rng.random() < 0.5:
        file.images[-1].next = position
    pointer = rng.choice((305, 40000, 330, 34665, 34853))
    file.images[0].entries.append(Entry(pointer, 4, 9, field=position))
    near = file.bytes()
    # A hole reads as any number of entries that fail: what is asked for there must be refused.
    far_bytes = file.directory_bytes(far, 0)
    return Case(near, far=(position, far_bytes), largest_block=1 << 12)


def crowded(rng):
    """So many tags that their number wraps at 16 bits, or nearly: a directory that seems to have
    none is dropped. Images of TIFF files have 22 default tags or fewer besides."""
    flavour = rng.choice((CLASSIC, AS_READ))
    crowd = Directory("image", [Entry(305, 2, 1, b"k")] * (65536 - 22 + rng.choice((-1, 0, 0, 1))))
    if rng.random() < 0.5:
        crowd.entries[0] = Entry(259, 3, 1, b"\5\0")  # One default less.
    after = Directory("image", [Entry(305, 2, 2, b"a\0")])
    images = rng.choice(([crowd], [crowd, after], [after, crowd]))
    return Case(File("<", flavour, images).bytes(), block_budget=0)
