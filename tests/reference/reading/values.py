"""Host values, in the form in which both readings are compared.

Numbers are kept as the hexadecimal digits of their 64 bits, characters as those of their 16 units,
most significant first. An empty place is None; an array that the host cannot make is None too.
"""

import struct


def numbers(host, values, rows, columns):
    if not host.holds(8 * len(values)):
        return None
    return {
        "class": "double",
        "dimensions": [rows, columns],
        "bits": struct.pack(f">{len(values)}d", *values).hex(),
    }


def column(host, values):
    return numbers(host, values, len(values), 1)


def row(host, values):
    return numbers(host, values, 1, len(values))


def scalar(host, value):
    return numbers(host, [value], 1, 1)


def empty_double():
    return {"class": "double", "dimensions": [0, 0], "bits": ""}


def characters(host, text):
    """One character for each byte of `text`, which is a str of characters below 256."""
    if not host.holds(2 * len(text)):
        return None
    return {
        "class": "char",
        "dimensions": [1, len(text)],
        "units": text.encode("utf-16-be").hex(),
    }


def string(host, text):
    """As from a C string: ends before the first NUL."""
    return characters(host, text.split("\0")[0])


def cells(host, places):
    if not host.holds(8 * len(places)):
        return None
    return {"class": "cell", "dimensions": [len(places), 1], "cells": places}


class Structure:
    """A structure array of one column under construction."""

    def __init__(self, host, size, names):
        self.host = host
        self.names = names
        self.slots = {name: slot for slot, name in enumerate(names)}
        self.elements = [[None] * len(names) for _ in range(size)]

    @staticmethod
    def fits(host, size, names):
        return host.holds(8 * size * len(names))

    def set(self, element, name, value):
        """A missing value changes nothing. A value whose name has no field is left over."""
        if value is None:
            return
        slot = self.slots.get(name)
        if slot is None:
            self.host.left_arrays += 1
        else:
            self.elements[element][slot] = value

    def value(self):
        return {
            "class": "struct",
            "dimensions": [len(self.elements), 1],
            "fields": self.names,
            "elements": self.elements,
        }
