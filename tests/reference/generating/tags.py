"""Tags by the directories they belong in, with likely types and codes."""

from .numbers import ASCII, BYTE, DOUBLE, FLOAT, LONG, RATIONAL, SHORT, SRATIONAL, UNDEFINED

COMPRESSIONS = [0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 32766, 32767, 32771, 32773, 32809, 32895, 32896]
COMPRESSIONS += [32897, 32898, 32908, 32909, 32946, 32947, 34661, 34676, 34677, 34712, 50000]
PHOTOMETRICS = list(range(12)) + [32803, 32844, 32845, 34892, 65535]

# By tag: likely types, likely codes.
LIKELY = {
    254: ([LONG], [0, 1, 2]),
    256: ([SHORT, LONG], [1, 640]),
    257: ([SHORT, LONG], [1, 480]),
    258: ([SHORT], [1, 8, 16, 32]),
    259: ([SHORT], COMPRESSIONS),
    262: ([SHORT], PHOTOMETRICS),
    263: ([SHORT], [1, 2]),
    266: ([SHORT], [1, 2]),
    269: ([ASCII], []),
    270: ([ASCII], []),
    271: ([ASCII], []),
    273: ([LONG], []),
    274: ([SHORT], list(range(1, 9))),
    277: ([SHORT], [1, 3, 4]),
    278: ([SHORT, LONG], []),
    279: ([LONG], []),
    280: ([SHORT], [0]),
    281: ([SHORT], [255]),
    282: ([RATIONAL], [72, 300]),
    283: ([RATIONAL], [72, 300]),
    284: ([SHORT], [0, 1, 2, 3]),
    290: ([SHORT], [0, 1, 2, 3, 4, 5, 6]),
    296: ([SHORT], [0, 1, 2, 3, 4]),
    301: ([SHORT], []),
    305: ([ASCII], []),
    306: ([ASCII], []),
    317: ([SHORT], [0, 1, 2, 3]),
    320: ([SHORT], [0, 255, 65535]),
    322: ([LONG], []),
    323: ([LONG], []),
    324: ([LONG], []),
    325: ([LONG], []),
    332: ([SHORT], [0, 1, 2, 3]),
    338: ([SHORT], [0, 1, 2]),
    339: ([SHORT], [1, 2, 3, 4, 5, 6]),
    512: ([SHORT], [1, 2, 14]),
    529: ([RATIONAL], []),
    531: ([SHORT], [0, 1, 2, 3]),
    700: ([BYTE, UNDEFINED], [60, 120, 109, 112, 62, 0]),
    33432: ([ASCII], []),
    33550: ([DOUBLE], []),
    34377: ([BYTE], []),
    34675: ([UNDEFINED], []),
    42112: ([ASCII], []),
    50706: ([BYTE], []),
    50723: ([SRATIONAL], []),
}
BASELINE = sorted(LIKELY)

EXIF = [33434, 33437, 34850, 34852, 34855, 36864, 36867, 37121, 37377, 37378, 37379, 37380, 37383]
EXIF += [37385, 37386, 37500, 37510, 37520, 40960, 40961, 40962, 41483, 41486, 41728, 41985, 42016]
LIKELY |= {
    33434: ([RATIONAL], []),
    36864: ([UNDEFINED], []),
    36867: ([ASCII], []),
    37377: ([SRATIONAL], []),
    37380: ([SRATIONAL], []),
    37383: ([SHORT], []),
    37500: ([UNDEFINED], []),
}

GPS = list(range(32))
INTEROPERABILITY = [1, 2, 3, 4096, 4097, 4098]
POINTERS = {"sub": 330, "exif": 34665, "gps": 34853, "interoperability": 40965}
UNNAMED = [0, 5, 260, 261, 267, 268, 275, 294, 299, 329, 335, 348, 516, 701, 33000, 42034, 65535]
ANY_TYPES = [BYTE, ASCII, SHORT, LONG, RATIONAL, FLOAT, DOUBLE, SRATIONAL]


def tag_for(rng, kind):
    """A tag that a directory of this kind might hold, or one that it should not."""
    chance = rng.random()
    if chance < 0.06:
        return rng.choice(UNNAMED)
    if chance < 0.08:
        return rng.getrandbits(16)
    if chance < 0.10:
        return rng.choice(list(POINTERS.values()))
    if kind == "gps":
        return rng.choice(GPS)
    if kind == "interoperability":
        return rng.choice(INTEROPERABILITY)
    if kind == "exif":
        return rng.choice(EXIF if chance < 0.7 else BASELINE)
    return rng.choice(BASELINE if chance < 0.9 else EXIF)


def likely(rng, tag):
    types, codes = LIKELY.get(tag, (ANY_TYPES, []))
    return rng.choice(types), codes
