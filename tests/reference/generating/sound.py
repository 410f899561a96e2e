"""Files in which nothing is wrong, except that tags may stand where nobody expects them."""

from . import numbers, tags
from .tree import AS_READ, CLASSIC, PUBLISHED, Directory, Entry, File

DEEPEST = 4


def sound_file(rng, jpeg=False):
    order = rng.choice("<>")
    flavour = CLASSIC if jpeg or rng.random() < 0.6 else rng.choice((AS_READ, AS_READ, PUBLISHED))
    images = [directory(rng, order, "image") for _ in range(images_in(rng, jpeg))]
    return File(order, flavour, images)


def images_in(rng, jpeg):
    return 1 if jpeg and rng.random() < 0.8 else rng.choice((1, 1, 1, 1, 2, 2, 3, 5))


def directory(rng, order, kind, depth=0):
    made = Directory(kind)
    for _ in range(rng.choice((1, 2, 3, 5, 8, 12)) if rng.random() < 0.95 else rng.randrange(60)):
        tag = tags.tag_for(rng, kind)
        if tag in tags.POINTERS.values():
            continue
        made.entries.append(entry(rng, order, tag))
    for target_kind, tag in tags.POINTERS.items():
        if depth < DEEPEST and rng.random() < chance_of(kind, target_kind):
            target = directory(rng, order, "image" if tag == 330 else target_kind, depth + 1)
            made.entries.append(Entry(tag, rng.choice((4, 4, 4, 13)), 1, target=target))
    if not made.entries:
        made.entries.append(entry(rng, order, 305))
    if rng.random() < 0.85:
        made.entries.sort(key=lambda each: each.tag)
    else:
        rng.shuffle(made.entries)
    return made


def chance_of(kind, target_kind):
    """GPS and Interoperability directories may point nowhere; a few do."""
    if kind in ("gps", "interoperability"):
        return 0.02
    expected = {"image": ("exif", "gps", "sub"), "exif": ("interoperability",)}
    return 0.25 if target_kind in expected[kind] else 0.04


def entry(rng, order, tag):
    data_type, codes = tags.likely(rng, tag)
    if rng.random() < 0.12:
        data_type = rng.choice(numbers.TYPES)
    count = count_for(rng, data_type, tag)
    return Entry(tag, data_type, count, numbers.value(rng, order, data_type, count, codes))


def count_for(rng, data_type, tag):
    chance = rng.random()
    if chance < 0.04:
        return 0
    if chance < 0.06:
        return rng.randrange(40, 900)
    if data_type == numbers.ASCII or chance < 0.12 or tag == 320:
        return rng.randrange(1, 40)
    if tag in (258, 277, 339) and chance < 0.6:
        return rng.choice((1, 2, 3, 4))
    return 1 if chance < 0.75 else rng.randrange(1, 9)
