"""What an image directory says of the baseline tags that it lacks."""

from .entries import Tag
from .interpretation import interpret

# In the order in which they are added; None: no value.
DEFAULTS = {
    254: 0.0,
    258: "one bit for each sample",
    259: 1.0,
    263: 1.0,
    266: 1.0,
    273: None,
    274: 1.0,
    277: 1.0,
    278: 4294967295.0,
    279: None,
    280: 0.0,
    281: "largest value of each sample",
    282: None,
    283: None,
    284: 1.0,
    290: 2.0,
    296: 1.0,
    320: None,
    322: None,
    323: None,
    324: None,
    325: None,
}


def default_tags(directory):
    """The missing bits per sample become a fact of the directory, too."""
    tags = []
    for tag_id, value in DEFAULTS.items():
        if tag_id in directory.present:
            continue
        if tag_id == 258:
            directory.bits_per_sample += [1.0] * directory.sample_count
            values = [1.0] * directory.sample_count
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
