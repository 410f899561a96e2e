"""What can be wrong with a file: in words, before it is written, and with its bytes."""

import copy

from . import numbers, sound, tags
from .tree import CLASSIC, Entry

TYPES = [0, 13, 14, 15, 16, 17, 18, 255, 0x0100, 0x0D00, 65535]
COUNTS = [0, 1, 2, 3, 5, 9, 1000, 65536, 0x10000000, 0x1FFFFFFF, 0x20000000, 0x20000001]
COUNTS += [0x40000000, 0x40000001, 0x7FFFFFFF, 0x80000000, 0x80000001, 0xFFFFFFFF]
# Entry counts: none, more than there are, and around the limit of an Exif block.
STATED = [0, 0, 1, 2, 200, 5461, 5462, 65535]
# Of these the 32-bit size of the table wraps, or only the low half is kept.
WIDE_STATED = [1 << 32, (1 << 32) + 1, 0x0CCCCCCD, 0x0CCCCCCE, 0x33333334, 0x40000000, 0x80000000]
WIDE_STATED += [0xFFFFFFFF, 1 << 63, (1 << 64) - 1]


def damage_tree(rng, file):
    """One thing, at a place of its choice."""
    size = file.place()
    directory = rng.choice(file.directories())
    rng.choice(DAMAGES)(rng, file, directory, size)


def wrong_type(rng, file, directory, size):
    rng.choice(directory.entries).type = rng.choice(TYPES)


def other_type(rng, file, directory, size):
    rng.choice(directory.entries).type = rng.choice(numbers.TYPES)


def wrong_count(rng, file, directory, size):
    entry = rng.choice(directory.entries)
    entry.count = rng.choice([*COUNTS, entry.count + 1, entry.count * 2, size])


def wrong_offset(rng, file, directory, size):
    entry = rng.choice(directory.entries)
    near = [size - 1, size, size + 1, size - len(entry.value), directory.position]
    entry.field = rng.choice([*near, 0, 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, rng.randrange(size)])
    entry.field &= 0xFFFFFFFF
    if rng.random() < 0.7:
        entry.count = max(entry.count, 9)


def wrong_tag(rng, file, directory, size):
    rng.choice(directory.entries).tag = tags.tag_for(rng, directory.kind)


def doubled_entry(rng, file, directory, size):
    entry = copy.copy(rng.choice(directory.entries))
    if rng.random() < 0.6 and entry.target is None:
        entry = sound.entry(rng, file.order, entry.tag)
    directory.entries.insert(rng.randrange(len(directory.entries) + 1), entry)


def colliding_entry(rng, file, directory, size):
    """A baseline tag where its name is a default name, or was taken by one."""
    directory.entries.append(sound.entry(rng, file.order, rng.choice(tags.BASELINE)))


def unnamed_entries(rng, file, directory, size):
    for _ in range(rng.randrange(1, 30)):
        tag = rng.choice(tags.UNNAMED)
        directory.entries.append(sound.entry(rng, file.order, tag))


def pointer(rng, file, directory, size):
    """To a directory that need not be of the kind, and may be the one that points."""
    tag = rng.choice(list(tags.POINTERS.values()))
    target = rng.choice(file.directories())
    entry = Entry(tag, rng.choice((1, 2, 4, 4, 5, 13)), rng.choice((0, 1, 1, 2)), target=target)
    directory.entries.insert(rng.randrange(len(directory.entries) + 1), entry)


def dangling_pointer(rng, file, directory, size):
    tag = rng.choice(list(tags.POINTERS.values()))
    offset = rng.choice([0, size - 1, size, size + 1, 0x80000000, 0xFFFFFFFF, rng.randrange(size)])
    directory.entries.append(Entry(tag, 4, 1, field=offset))


def emptied(rng, file, directory, size):
    """Only what the output has no field for."""
    kept = [entry for entry in directory.entries if entry.tag in (256, 257)]
    size_entry = sound.entry(rng, file.order, rng.choice((256, 257)))
    directory.entries = kept or [size_entry]


def all_failing(rng, file, directory, size):
    for entry in directory.entries:
        entry.type = rng.choice(TYPES)


def wrong_stated_count(rng, file, directory, size):
    n = len(directory.entries)
    choices = [*STATED, n - 1, n + 1, n + 2]
    if file.flavour != CLASSIC:
        choices += [*WIDE_STATED, (1 << 32) + n]
    directory.stated_count = rng.choice(choices)


def wrong_next(rng, file, directory, size):
    directory = rng.choice(file.images)
    near = [size - 2, size - 1, size, size + 1, directory.position, file.images[0].position]
    far = [1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 1 << 32, 1 << 63, (1 << 64) - 1]
    directory.next = rng.choice(near * 2 + far + [rng.randrange(size)])


def wrong_first(rng, file, directory, size):
    far = [0, 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 1 << 63, (1 << 64) - 1]
    wrapping = [(1 << 63) + file.images[0].position, (0xFFFFFFFF << 32) + 0x80000000]
    file.first = rng.choice([size - 1, size, size + 1, rng.randrange(size)] * 3 + far + wrapping)


def wrong_version(rng, file, directory, size):
    file.version = rng.choice((42, 43, 0x2A00, 0x2B00, 1))


DAMAGES = [wrong_type, other_type, wrong_count, wrong_offset, wrong_tag, doubled_entry, pointer]
DAMAGES += [colliding_entry, unnamed_entries, dangling_pointer, wrong_stated_count, wrong_next]
DAMAGES = DAMAGES * 3 + [emptied, all_failing, wrong_first, wrong_version]


def damage_bytes(rng, content):
    """One thing, with no idea of what the bytes mean."""
    return rng.choice((flip_bits, set_bytes, truncate, truncate, remove, double, append))(
        rng, bytearray(content)
    )


def flip_bits(rng, content):
    for _ in range(rng.choice((1, 1, 2, 8))):
        content[rng.randrange(len(content))] ^= 1 << rng.randrange(8)
    return bytes(content)


def set_bytes(rng, content):
    for _ in range(rng.choice((1, 1, 2, 8))):
        content[rng.randrange(len(content))] = rng.choice((0, 1, 2, 13, 127, 128, 255))
    return bytes(content)


def truncate(rng, content):
    return bytes(content[: rng.randrange(len(content))])


def remove(rng, content):
    start = rng.randrange(len(content))
    del content[start : start + rng.choice((1, 2, 4, 12))]
    return bytes(content)


def double(rng, content):
    start = rng.randrange(len(content))
    content[start:start] = content[start : start + rng.choice((1, 2, 4, 12))]
    return bytes(content)


def append(rng, content):
    return bytes(content) + rng.randbytes(rng.randrange(1, 40))
