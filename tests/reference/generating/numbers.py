"""Random values of the data types, as they lie in a file."""

import struct

BYTE, ASCII, SHORT, LONG, RATIONAL, SBYTE = 1, 2, 3, 4, 5, 6
UNDEFINED, SSHORT, SLONG, SRATIONAL, FLOAT, DOUBLE = 7, 8, 9, 10, 11, 12

TYPES = list(range(1, 13))
SIZES = {1: 1, 2: 1, 3: 2, 4: 4, 5: 8, 6: 1, 7: 1, 8: 2, 9: 4, 10: 8, 11: 4, 12: 8}
# What struct calls them, and their bits.
INTEGERS = {1: ("B", 8), 3: ("H", 16), 4: ("I", 32), 6: ("b", 8), 7: ("B", 8)}
INTEGERS |= {8: ("h", 16), 9: ("i", 32)}
SIGNED = (SBYTE, SSHORT, SLONG)

# Bits of singles and doubles at every edge: zeros, the smallest and largest, infinities, NaNs with
# and without the quiet bit, and numbers around the ends of 32-bit integers.
SINGLES = [0, 0x80000000, 1, 0x7F7FFFFF, 0x7F800000, 0xFF800000, 0x7FC00000, 0xFFC00001]
SINGLES += [0x7F800001, 0x4F000000, 0xCF000000, 0x3F800000, 0x3FC00000, 0x00800000]
DOUBLES = [0, 1 << 63, 1, 0x7FEFFFFFFFFFFFFF, 0x7FF0000000000000, 0xFFF0000000000000]
DOUBLES += [0x7FF8000000000000, 0xFFF8000000000123, 0x7FF0000000000001, 0x41DFFFFFFFE00000]
DOUBLES += [0x41DFFFFFFFC00000, 0x41E0000000000000, 0xC1E0000000000000, 0xC1E0000000200000]
DOUBLES += [0xC1E00000001FFFFF, 0x4090000000000000, 0x408FF80000000000, 0xC090CC0000000000]

TEXTS = [b"kiln\0", b"\0", b"", b"a\0b\0", b"no end", b"%s%n%d\0", b"caf\xe9\0", b"\xff\xfe\0\0"]
TEXTS += [b"2026:11:21 10:00:00\0", b"\0front", b'"quoted"\0', b"line\nline\0", b"R98\0", b"0230"]


def value(rng, order, data_type, count, codes=()):
    """`count` elements; numbers are likely to be among `codes`, if there are any."""
    if data_type == ASCII:
        return text(rng, count)
    if data_type in (RATIONAL, SRATIONAL):
        letter = "I" if data_type == RATIONAL else "i"
        words = []
        for _ in range(count):
            words += fraction(rng, data_type, codes)
        return struct.pack(f"{order}{2 * count}{letter}", *words)
    if data_type in INTEGERS:
        letter, bits = INTEGERS[data_type]
        words = [integer(rng, bits, data_type in SIGNED, codes) for _ in range(count)]
        return struct.pack(f"{order}{count}{letter}", *words)
    letter = "I" if data_type == FLOAT else "Q"
    words = [real(rng, data_type, codes) for _ in range(count)]
    return struct.pack(f"{order}{count}{letter}", *words)


def text(rng, count):
    if count > 64:
        return bytes([rng.choice(b"abc \xe9")]) * count
    return (rng.choice(TEXTS) + bytes(rng.choices(b"xyz\0", k=count)))[:count]


def fraction(rng, data_type, codes):
    signed = data_type == SRATIONAL
    numerator = integer(rng, 32, signed, codes)
    if codes and rng.random() < 0.5:
        return [numerator, 1]
    denominator = 0 if rng.random() < 0.03 else integer(rng, 32, signed, (1, 2, 3, 100, 1000000))
    return [numerator, denominator]


def integer(rng, bits, signed, codes):
    if codes and rng.random() < 0.9:
        number = rng.choice(codes)
    elif rng.random() < 0.5:
        number = rng.randrange(300)
    else:
        edge = 1 << rng.choice((bits, bits - 1, 8, 16))
        number = rng.choice((edge - 1, edge, edge + 1, rng.getrandbits(bits)))
    number &= (1 << bits) - 1
    return number - (1 << bits) if signed and number >> (bits - 1) else number


def real(rng, data_type, codes):
    """The bits of a single or double."""
    single = data_type == FLOAT
    chance = rng.random()
    if codes and chance < 0.7:
        number = rng.choice(codes) + rng.choice((0.0, 0.0, 0.9, -0.1))
        return int.from_bytes(struct.pack(">f" if single else ">d", number), "big")
    if chance < 0.9:
        return rng.choice(SINGLES if single else DOUBLES)
    return rng.getrandbits(32 if single else 64)
