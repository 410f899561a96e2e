"""Whole cases: a file's bytes, its name and date, and what the host grants for it."""

import dataclasses
import random

from .damage import damage_bytes, damage_tree
from .jpeg import jpeg_file, stray_walk
from .sound import entry, sound_file
from .tree import AS_READ, CLASSIC, Directory, Entry, File

SUFFIXES = [b".tif"] * 8 + [b"", b".jpg", b" of two words", b'"quoted"', b"%s%n%100d", b"\xff\xfe\xe9"]
SUFFIXES += ["–é".encode(), b"line\nline", b"back\\slash"]

# Before 1970, before 1901, after 2038, in years of five and eight digits, and beyond what fits.
DATES = [0, -1, 1, 951782399, 2147483648, -2208988800, -62135596801, 253402300800, 3155760000000000]
DATES += [3155692597470000, 67767976233532799, 67768036191676800, 2**62, -(2**62)]

# Enough for any file without loops. A file with loops is read until it has had them all.
BLOCKS = 500
LARGEST = 1 << 26


@dataclasses.dataclass
class Case:
    content: bytes
    suffix: bytes = b".tif"
    date: int | None = None
    block_budget: int = BLOCKS
    largest_block: int = LARGEST


def case(seed, index):
    rng = random.Random(f"{seed}:{index}")
    if index % 4000 == 1999:
        return crowded(rng)
    made = Case(content(rng), rng.choice(SUFFIXES))
    if rng.random() < 0.1:
        made.date = rng.choice(DATES)
    chance = rng.random()
    if chance < 0.08:
        made.largest_block = rng.choice((300, 400, 600, 1000, 2000, 4000))
    elif chance < 0.10:
        made.block_budget = rng.randrange(1, 60)
    return made


def content(rng):
    chance = rng.random()
    if chance < 0.01:
        return stray_walk(rng)
    if chance < 0.02:
        return rng.choice((b"", b"I", b"II*", b"\xff\xd8\xff", b"MM\0\x2b", b"II+\0")) + rng.randbytes(
            rng.randrange(30)
        )
    jpeg = rng.random() < 0.2
    file = sound_file(rng, jpeg)
    chance = rng.random()
    if chance < 0.6:
        for _ in range(rng.choice((1, 1, 2, 3, 5))):
            damage_tree(rng, file)
    made = file.bytes()
    if jpeg:
        made = jpeg_file(rng, made)
    if 0.5 < chance < 0.75:
        made = damage_bytes(rng, made)
    return made


def crowded(rng):
    """So many tags that their number wraps at 16 bits, or nearly: a directory that seems to have
    none is dropped. Images of TIFF files have 22 default tags or fewer besides."""
    flavour = rng.choice((CLASSIC, AS_READ))
    directory = Directory("image")
    defaults = 22
    if rng.random() < 0.5:
        directory.entries.append(entry(rng, "<", 259))
        directory.entries[0].type, directory.entries[0].count = 3, 1
        defaults = 21
    total = 65536 + rng.choice((-1, 0, 0, 1)) - defaults - len(directory.entries)
    directory.entries += [Entry(305, 2, 1, b"k")] * total
    after = Directory("image", [Entry(305, 2, 2, b"a\0")])
    images = rng.choice(([directory], [directory, after]))
    return Case(File("<", flavour, images).bytes(), block_budget=0)
