"""The fallback tags of an image directory."""

from tag_vocabulary import FALLBACKS

from .entries import Tag
from .interpretation import interpret


def default_tags(directory):
    """The missing bits per sample become a fact of the directory, too."""
    tags = []
    for tag_id, value in FALLBACKS.items():
        if tag_id in directory.present:
            continue
        if tag_id == 258:
            directory.bits_per_sample += [value] * directory.sample_count
            values = [value] * directory.sample_count
        elif tag_id == 281:
            values = [two_to_the(bits) - 1 for bits in directory.bits_per_sample]
        else:
            values = [] if value is None else [value]
        tag = Tag(tag_id, directory.ifd_id, values)
        interpret(tag)
        tags.append(tag)
    return tags


def two_to_the(bits):
    """As C has it: what is too large is infinite."""
    try:
        return 2.0 ** float(bits)
    except OverflowError:
        return float("inf")
