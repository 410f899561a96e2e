"""Where the Exif block of a JPEG file lies."""

import dataclasses
import pathlib

APP1, MARKER = 0xE1, 0xFF


def end_of_segment(content, at):
    """Where the segment whose marker is at this place ends by its own account, which may be beyond
    the content."""
    return at + 2 + int.from_bytes(content[at + 2:at + 4], "big")


@dataclasses.dataclass
class ExifSegment:
    """`base` is where the TIFF header begins, from which offsets count."""

    base: int
    end: int
    content: bytes = dataclasses.field(repr=False)  # Of the whole file.

    def is_cut_off(self):
        """Whether the file ends in this segment or in the next."""
        return (len(self.content) < self.end + 4
                or len(self.content) < end_of_segment(self.content, self.end))


def exif_segment(path):
    """The first APP1 segment of the file, or None."""
    content = pathlib.Path(path).read_bytes()
    at = 2
    while at + 4 <= len(content) and content[at] == MARKER:
        if content[at + 1] == APP1:
            return ExifSegment(at + 10, end_of_segment(content, at), content)
        at = end_of_segment(content, at)
    return None
