"""Values of every data type, as they lie in a file."""

import functools
import math
import struct

TYPES = [*range(15), 16, 18, 65535]
ASCII, FLOAT, DOUBLE, IFD = 2, 11, 12, 13
FRACTIONS = (5, 10)

# What struct calls the elements; of fractions, their halves.
LETTERS = {1: "B", 3: "H", 4: "I", 5: "I", 6: "b", 7: "B", 8: "h", 9: "i", 10: "i"}
LETTERS |= {FLOAT: "f", DOUBLE: "d", IFD: "I"}

INTEGERS = [1, 2, 3, 0, 6, -1, 8, 255, -128, 127, 128, 32767, 32768, 65535, -32768, 16909060]
INTEGERS += [-(2**31), 5, 4, 32773, 258, -2, 2**31, 2**32 - 1]
REALS = [1, 2.9, 0, 0.5, -0.5, 6.5, 3, 32773, -1, 1e10, -3, 1e30, 65535, math.nan, 8, -math.inf]
REALS += [4, 0.25, math.inf, 5]
CHARACTERS = b'ki\0ln\n\xe9%s\0"'


def fits(data_type, number):
    if data_type in (FLOAT, DOUBLE):
        return True
    try:
        struct.pack(LETTERS[data_type], int(number))
    except struct.error:
        return False
    return number == int(number)


# The elements to choose from; of fractions the halves.
ELEMENTS = {
    data_type: REALS
    if data_type in (FLOAT, DOUBLE)
    else [number for number in INTEGERS if fits(data_type, number)]
    for data_type in LETTERS
}


@functools.cache
def varied_value(order, data_type, count, tag):
    """A value of typical and extreme elements. Which they are depends on the tag and the count."""
    choices = [tag + count + 7 * i for i in range(count)]
    if data_type == ASCII:
        return bytes(CHARACTERS[choice % len(CHARACTERS)] for choice in choices)
    if data_type not in LETTERS:
        return b"\1\2\3\4"
    elements = ELEMENTS[data_type]
    numbers = [elements[choice % len(elements)] for choice in choices]
    if data_type in FRACTIONS:
        others = [elements[(choice // 3 + i) % len(elements)] for i, choice in enumerate(choices)]
        numbers = [half for pair in zip(numbers, others) for half in pair]
    return struct.pack(f"{order}{len(numbers)}{LETTERS[data_type]}", *numbers)


def uniform_value(order, data_type, count, number):
    """A value whose elements are all `number`; None if the type cannot hold it."""
    scale = 10 if data_type in FRACTIONS and number != int(number) else 1
    if not fits(data_type, number * scale) or (data_type == FLOAT and abs(number) > 1e30):
        return None
    letter = LETTERS[data_type]
    if data_type in FRACTIONS:
        return struct.pack(f"{order}2{letter}", int(number * scale), scale) * count
    whole = number if data_type in (FLOAT, DOUBLE) else int(number)
    return struct.pack(order + letter, whole) * count
