"""How ExifTool writes values as texts."""

import base64
import math

# ExifTool prints ten significant digits of a quotient; whole numbers it prints in full.
TOLERANCE = 1e-9
ROUNDED_TYPES = {"rational64u", "rational64s", "float", "double"}

# Quotients by zero, one of them of zero itself.
NOT_NUMBERS = {"undef", "inf"}


def binary(text):
    """The bytes of a value that ExifTool takes for binary data, or None."""
    prefix, colon, encoded = text.partition(":")
    return base64.b64decode(encoded) if prefix == "base64" and colon else None


def numbers_in(text):
    """The numbers of a value, None for a quotient by zero; nothing for a text."""
    data = binary(text)
    if data is not None:
        return [float(byte) for byte in data]
    try:
        return [None if word in NOT_NUMBERS else float(word) for word in text.split()]
    except ValueError:
        return None


def is_close(ours, theirs):
    if None in (ours, theirs):
        return ours is theirs
    return ours == theirs if theirs.is_integer() else math.isclose(ours, theirs, rel_tol=TOLERANCE)


def are_close(ours, theirs):
    return theirs is not None and len(ours) == len(theirs) and all(map(is_close, ours, theirs))
