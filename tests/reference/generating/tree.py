"""Directories in words, and their way into bytes."""

import dataclasses
import struct

CLASSIC, AS_READ, PUBLISHED = "classic", "as read", "published"


@dataclasses.dataclass
class Entry:
    """`field` overrides what stands where an offset does; `target` is a directory pointed to."""

    tag: int
    type: int
    count: int
    value: bytes = b""
    target: object = None
    field: int | None = None


@dataclasses.dataclass(eq=False)
class Directory:
    """`stated_count` and `next` override what would be right."""

    kind: str
    entries: list = dataclasses.field(default_factory=list)
    stated_count: int | None = None
    next: int | None = None
    position: int = 0


@dataclasses.dataclass
class File:
    """`flavour` is where BigTIFF entries have their fields: count and offset in 32 bits at bytes
    4 and 8, or count in 64 bits and value or offset behind it. Both are given to the module."""

    order: str
    flavour: str
    images: list
    first: int | None = None
    version: int | None = None

    @property
    def big(self):
        return self.flavour != CLASSIC

    def directories(self):
        """Each once, however often it is pointed to."""
        found = {}
        waiting = list(reversed(self.images))
        while waiting:
            directory = waiting.pop()
            if id(directory) not in found:
                found[id(directory)] = directory
                waiting += [entry.target for entry in directory.entries if entry.target]
        return list(found.values())

    def capacity(self):
        return 8 if self.big else 4

    def outside(self, entry):
        return entry.target is None and entry.field is None and len(entry.value) > self.capacity()

    def place(self):
        """Positions of the directories; the file's size."""
        position = 16 if self.big else 8
        count_size, entry_size = (8, 20) if self.big else (2, 12)
        for directory in self.directories():
            directory.position = position
            position += count_size + entry_size * len(directory.entries) + self.capacity()
            position += sum(len(e.value) for e in directory.entries if self.outside(e))
        return position

    def bytes(self):
        self.place()
        first = self.images[0].position if self.first is None else self.first
        parts = [self.header(first)]
        successors = dict(zip(map(id, self.images), self.images[1:]))
        for directory in self.directories():
            successor = successors.get(id(directory))
            parts.append(self.directory_bytes(directory, successor.position if successor else 0))
        return b"".join(parts)

    def header(self, first):
        mark = b"MM" if self.order == ">" else b"II"
        if not self.big:
            return mark + struct.pack(self.order + "HI", self.version or 42, first & 0xFFFFFFFF)
        # Of a big-endian header the module wants the bytes 2B 00.
        version = self.version or (0x2B00 if self.order == ">" else 43)
        return mark + struct.pack(self.order + "HHHQ", version, 8, 0, first & (1 << 64) - 1)

    def directory_bytes(self, directory, successor):
        stated = directory.stated_count
        stated = len(directory.entries) if stated is None else stated
        following = successor if directory.next is None else directory.next
        table, values = [], []
        count_size, entry_size = (8, 20) if self.big else (2, 12)
        behind = directory.position + count_size + entry_size * len(directory.entries)
        behind += self.capacity()
        for entry in directory.entries:
            table.append(self.entry_bytes(entry, behind))
            if self.outside(entry):
                values.append(entry.value)
                behind += len(entry.value)
        count = struct.pack(self.order + "Q", stated & (1 << 64) - 1)
        if not self.big:
            count = struct.pack(self.order + "H", stated & 0xFFFF)
        return b"".join([count, *table, self.offset(following), *values])

    def offset(self, offset):
        if self.big:
            return struct.pack(self.order + "Q", offset & (1 << 64) - 1)
        return struct.pack(self.order + "I", offset & 0xFFFFFFFF)

    def entry_bytes(self, entry, behind):
        field = self.field(entry, behind)
        count = entry.count & 0xFFFFFFFF
        inline = b"" if field is not None else entry.value
        if self.flavour == AS_READ:
            head = struct.pack(self.order + "HHII", entry.tag, entry.type, count, field or 0)
            return head + inline.ljust(8, b"\0")[:8]
        form = "HHQ" if self.big else "HHI"
        head = struct.pack(self.order + form, entry.tag, entry.type, count)
        if field is not None:
            return head + self.offset(field)
        return head + inline.ljust(self.capacity(), b"\0")[: self.capacity()]

    def field(self, entry, behind):
        """What stands where an offset does, or None when the value stands there itself."""
        if entry.field is not None:
            return entry.field
        if entry.target is not None:
            return entry.target.position
        return behind if self.outside(entry) else None
