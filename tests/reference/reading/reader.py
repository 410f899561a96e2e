"""An open file: its bytes, a position, and the layout of its format."""

import os

JPEG, CLASSIC, BIG = 0, 1, 2


class Reader:
    """Positions count from the start of the file, `base` is where the TIFF header lies."""

    def __init__(self, name, content, status):
        self.name = os.fsencode(name).decode("latin-1")
        self.quoted = f'"{self.name}" '
        self.content = content
        self.size = status.st_size
        self.modified = status[8]  # Whole seconds, as the C library has them.
        self.position = 0
        self.base = 0
        self.order = "<"
        self.mark = b""
        self.version = 0
        self.format = JPEG
        self.entry_size, self.count_size, self.offset_size = 12, 2, 4

    def become(self, file_format):
        self.format = file_format
        if file_format == BIG:
            self.entry_size, self.count_size, self.offset_size = 20, 8, 8

    def take(self, size):
        """The next `size` bytes, or None when there are fewer."""
        taken = self.content[self.position : self.position + size]
        self.position += len(taken)
        return taken if len(taken) == size else None

    def take_number(self, size):
        taken = self.take(size)
        return None if taken is None else int.from_bytes(taken, self.byte_order)

    @property
    def byte_order(self):
        return "big" if self.order == ">" else "little"

    def seek(self, position):
        """False when there is no such position."""
        if position < 0:
            return False
        self.position = position
        return True


def signed(number, bits):
    """The two's complement reading of the low `bits` of a number."""
    number &= (1 << bits) - 1
    return number - (1 << bits) if number >> (bits - 1) else number
