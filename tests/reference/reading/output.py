"""The host values of what was read."""

import time

from tag_vocabulary import BASELINE_FIELDS, COLOR_TYPES, GENERAL_FIELDS, WORD_LISTS

from .host import HostError
from .reader import JPEG
from .values import Structure, cells, characters, column, empty_double, numbers, row, scalar, string

IMAGE = 0

SAMPLE_FORMATS, _ = WORD_LISTS[339]


def chain_value(reader, host, chain):
    if not chain.names and not chain.has_unknown:
        return empty_double()
    names = field_names(reader, chain)
    size = len(chain.directories)
    if not Structure.fits(host, size, names):
        raise HostError(
            "ZEPHRA:veltrace:IFDSet:infoStructAllocationFailure",
            "Could not allocate enough memory for the output structure.",
        )
    structure = Structure(host, size, names)
    if chain.ifd_id == IMAGE:
        set_general_fields(reader, host, structure, size)
    for element, directory in enumerate(chain.directories):
        if chain.ifd_id == IMAGE:
            set_image_fields(host, structure, element, directory)
        for tag in directory.known:
            structure.set(element, tag.name, known_value(reader, host, tag))
        if directory.unknown:
            structure.set(element, "UnknownTags", unknown_tags(host, directory.unknown))
    return structure.value()


def field_names(reader, chain):
    """Default names are left out of the tags' names, also where no default name comes first."""
    default = GENERAL_FIELDS + ([] if reader.format == JPEG else BASELINE_FIELDS)
    taken = () if reader.format == JPEG else default
    names = list(default) if chain.ifd_id == IMAGE else []
    names += [name for _, name in sorted(chain.names.items()) if name not in taken]
    if chain.has_unknown:
        names.append("UnknownTags")
    return names


def set_general_fields(reader, host, structure, size):
    date = modification_date(reader.modified)
    for element in range(size):
        structure.set(element, "Filename", string(host, reader.name))
        structure.set(element, "FileModDate", string(host, date))
        structure.set(element, "FileSize", scalar(host, reader.size))
        structure.set(element, "Format", string(host, "jpg" if reader.format == JPEG else "tif"))
        if reader.format == JPEG:
            structure.set(element, "FormatSignature", empty_double())
            continue
        version = [reader.version & 255, reader.version >> 8]
        structure.set(element, "FormatSignature", row(host, [*reader.mark, *version]))
        order = "big-endian" if reader.order == ">" else "little-endian"
        structure.set(element, "ByteOrder", string(host, order))


def modification_date(seconds):
    """Must fit, with a NUL behind it, into 25 bytes."""
    try:
        date = time.strftime("%d-%b-%Y %H:%M:%S", time.localtime(seconds))
    except (OverflowError, OSError):
        date = ""
    if not 0 < len(date) < 25:
        raise HostError(
            "ZEPHRA:veltrace:IFDSet:strftimeFailure",
            "Failed to create file modification time string.",
        )
    return date


def set_image_fields(host, structure, element, directory):
    structure.set(element, "Width", scalar(host, directory.width))
    structure.set(element, "Height", scalar(host, directory.height))
    if 320 in directory.present:
        color = string(host, "indexed")
    elif directory.photometric in COLOR_TYPES:
        color = string(host, COLOR_TYPES[directory.photometric])
    else:
        color = scalar(host, directory.photometric)
    structure.set(element, "ColorType", color)
    depth = 0.0
    for bits in directory.bits_per_sample:
        depth += bits
    structure.set(element, "BitDepth", scalar(host, depth))


def known_value(reader, host, tag):
    """None when there is none."""
    if tag.id == 339:
        return sample_format(host, tag.values)
    if tag.id == 320:
        return colormap(host, tag.values)
    if tag.chain is not None:
        return chain_value(reader, host, tag.chain)
    if tag.word or tag.text:
        return characters(host, tag.word or tag.text)
    if not tag.values:
        return None
    value = (row if tag.id in (258, 281) else column)(host, tag.values)
    if value is None:
        raise HostError(
            "ZEPHRA:veltrace:TiffTag:numericAllocationFailure",
            f"Could not allocate enough memory for the output array for tag{tag.name}.\n",
        )
    return value


def sample_format(host, values):
    if any(value < 1.0 or value > 6.0 for value in values):
        return string(host, "Unknown")
    words = ["Unknown" if value != value else SAMPLE_FORMATS[int(value)] for value in values]
    if len(words) == 1:
        return string(host, words[0])
    value = cells(host, [string(host, word) for word in words])
    if value is None:
        raise HostError(
            "ZEPHRA:veltrace:processSampleFormat",
            "Could not allocate memory for SampleFormat tag value.",
        )
    return value


def colormap(host, values):
    if not values:
        return None
    rows = len(values) // 3
    value = numbers(host, [number / 65535.0 for number in values[: 3 * rows]], rows, 3)
    if value is None:
        raise HostError(
            "ZEPHRA:veltrace:tifftag:colormapAllocationFailure",
            "Could not allocate memory for Colormap tag value.",
        )
    return value


def unknown_tags(host, tags):
    names = ["ID", "Offset", "Value"]
    if not Structure.fits(host, len(tags), names):
        raise HostError(
            "ZEPHRA:veltrace:IFDSet:unknownTags:infoStructAllocationFailure",
            "Could not allocate enough memory for the list of unknown tags.",
        )
    structure = Structure(host, len(tags), names)
    for element, tag in enumerate(tags):
        structure.set(element, "ID", scalar(host, tag.id))
        structure.set(element, "Offset", scalar(host, tag.offset))
        structure.set(element, "Value", unknown_value(host, tag))
    return structure.value()


def unknown_value(host, tag):
    if tag.text:
        return checked(string(host, tag.text), tag, "char")
    if tag.values:
        return checked(column(host, tag.values), tag, "numeric")
    host.warn(
        "ZEPHRA:veltrace:unknownTagPayloadState",
        f"Tag data for unknown tag ID {tag.id}is in an unrecognized state.\n",
    )
    return None


def checked(value, tag, kind):
    if value is None:
        raise HostError(
            f"ZEPHRA:veltrace:TiffTag:unknownTag:{kind}AllocationFailure",
            f"Could not allocate enough memory for the output {kind} "
            f"array for the unknown tag with ID {tag.id}.\n",
        )
    return value
