"""Directories with an entry of every tag, type and count, and the files that hold them."""

import itertools

import tag_vocabulary as vocabulary
from generating.jpeg import segment
from generating.tree import AS_READ, CLASSIC, Directory, Entry, File
from values import DOUBLE, FLOAT, LETTERS, ASCII, TYPES, uniform_value, varied_value

JPEG = "jpeg"
CONTAINERS = [CLASSIC, AS_READ, JPEG]
ORDERS = ["<", ">"]
POINTERS = [330, 34665, 34853, 40965]
# The pointer tag that leads to the directory under test; 0 for a directory of the main chain.
PLACES = [0, *POINTERS]

# Tags with a treatment of their own, pointers, and some without either, known and unknown.
CHOSEN_TAGS = [0, 1, 2, 30, 31, 254, 256, 257, 258, 259, 262, 263, 270, 271, 273, 274, 277, 280]
CHOSEN_TAGS += [281, 282, 284, 290, 296, 317, 320, 330, 332, 333, 339, 340, 512, 531, 700, 4096]
CHOSEN_TAGS += [4097, 33434, 34665, 34675, 34853, 37383, 37510, 40965, 50000, 50834, 50835, 65535]
# Neighbours of known tags.
UNKNOWN_TAGS = [253, 260, 261, 276, 329, 331, 516, 4099, 34666, 40966]
EVERY_TAG = sorted(
    {*CHOSEN_TAGS, *UNKNOWN_TAGS, *vocabulary.IMAGE_NAMES, *vocabulary.GPS_NAMES}
    | {*vocabulary.INTEROPERABILITY_NAMES}
)
CODED_TAGS = [256, 257, 258, 259, 262, 277, 281, 284, 290, 296, 317, 332, 339, 512, 531, 700, 271]
CODED_TAGS += [37383, 50000]
CODED_TYPES = [1, *range(3, 13)]

OUTSIDE_THE_FILE = 0x7FFF0000

# Directories in a file of a format with chains.
CHAIN = 24


def every_code():
    """All codes of all tables with their neighbours, and numbers that are no codes."""
    tables = [vocabulary.COLOR_TYPES]
    tables += [rows for rows, _ in (vocabulary.WORDS | vocabulary.WORD_LISTS).values()]
    codes = {-2, -0.5, 0.5, 127, 128, 255, 256, 32767, 32768, 65535, 65536, 2147483647, 1e10}
    codes |= {2147483647.5, 2147483648, 4294967295, -2147483648, -2147483649, -1e300}
    for code in itertools.chain(*tables):
        codes |= {code - 1, code, code + 0.9, code + 1}
    return sorted(codes)


def lists_of_entries(container, order, place):
    """Each for a directory of its own, with the function of which it is a row."""
    yield from every_tag(order)
    yield from every_count(order)
    yield from lost_values(container, order)
    if place not in (330, 40965):  # As in the main chain, and as in GPS directories.
        yield from every_word(order)


def varied_entries(order, tags, data_type, count):
    return [Entry(tag, data_type, count, varied_value(order, data_type, count, tag)) for tag in tags]


def is_type(data_type):
    return data_type == ASCII or data_type in LETTERS


def types_and_counts(counts):
    """An entry of a type that does not exist fails whatever its count."""
    pairs = itertools.product(TYPES, counts)
    return [(kind, count) for kind, count in pairs if is_type(kind) or count <= 1]


def every_tag(order):
    for data_type, count in types_and_counts((1, 9)):
        yield varied_entries(order, EVERY_TAG, data_type, count)


def every_count(order):
    for data_type, count in types_and_counts((0, 1, 3, 4, 5, 6, 8, 16, 40)):
        yield varied_entries(order, CHOSEN_TAGS, data_type, count)


def lost_values(container, order):
    """The values of every other tag lie outside the file."""
    for data_type, count in types_and_counts((2, 4, 9)):
        entries = varied_entries(order, CHOSEN_TAGS, data_type, count)
        for entry in entries:
            is_outside = len(entry.value) > (8 if container == AS_READ else 4)
            if is_outside and entry.tag % 2 == 0 and entry.tag not in POINTERS:
                entry.field = OUTSIDE_THE_FILE
        yield entries


def every_word(order):
    for index, (code, data_type) in enumerate(itertools.product(every_code(), CODED_TYPES)):
        value = uniform_value(order, data_type, 1 + index % 2, code)
        if value is not None:
            yield [Entry(tag, data_type, 1 + index % 2, value) for tag in CODED_TAGS]


def innermost(order):
    """A directory for pointers to lead to."""
    facts = [(1, 4, 1), (271, 2, 6), (37383, 3, 3)]
    return Directory("inner", [
        Entry(tag, data_type, count, varied_value(order, data_type, count, tag))
        for tag, data_type, count in facts
    ])


def image_with(entries, place, target):
    for entry in entries:
        if entry.tag in POINTERS:
            entry.target = target
    if place == 0:
        return Directory("image", entries)
    return Directory("image", [Entry(place, 4, 1, target=Directory("inner", entries))])


def files(container, order, place):
    """The number of entries and the bytes of each file."""
    lists = iter(lists_of_entries(container, order, place))
    # Only the first directory of a JPEG file is read.
    while some := list(itertools.islice(lists, 1 if container == JPEG else CHAIN)):
        target = innermost(order)
        images = [image_with(entries, place, target) for entries in some]
        flavour = CLASSIC if container == JPEG else container
        content = File(order, flavour, images).bytes()
        if container == JPEG:
            content = b"\xff\xd8" + segment(0xE1, b"Exif\0\0" + content) + b"\xff\xd9"
        yield sum(map(len, some)), content
