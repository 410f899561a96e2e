"""What one call must give for a file."""

import mmap
import os

from .directories import IMAGE, read_chain
from .headers import read_header
from .host import Host, HostError, Limits
from .jpeg_walk import walk_to_exif
from .output import chain_value
from .reader import BIG, CLASSIC, JPEG, Reader
from .values import empty_double

SIGNATURES = {
    b"MM\0\x2a": CLASSIC,
    b"II\x2a\0": CLASSIC,
    # The order of the bytes is no slip: another big-endian BigTIFF file is not recognised.
    b"MM\x2b\0": BIG,
    b"II\x2b\0": BIG,
}


# Of larger files, which hold holes as a rule, only what is looked at is read.
FAR = 1 << 26


def predict(name, limits=Limits()):
    """Output, warnings, error and the blocks and arrays left over by a call without error."""
    host = Host(limits)
    output, error, leftovers = None, None, None
    try:
        host.grants_block(len(os.fsencode(name)) + 1)  # The name, as a C string.
        output = read_file(name, host)
        leftovers = [0, host.left_arrays]
    except HostError as failure:
        error = [failure.identifier, failure.text]
    return {"output": output, "warnings": host.warnings, "error": error, "leftovers": leftovers}


def read_file(name, host):
    content, status = contents_of(name)
    file_format = detect(content)
    reader = Reader(name, content, status)
    reader.become(file_format)
    if file_format != JPEG:
        read_header(reader)
    elif not walk_to_exif(reader, host):
        return empty_double()
    return chain_value(reader, host, read_chain(reader, host, IMAGE))


def contents_of(name):
    """Reads as nothing what can be opened but not read."""
    try:
        descriptor = os.open(name, os.O_RDONLY)
    except OSError:
        text = os.fsencode(name).decode("latin-1")
        raise HostError(
            "ZEPHRA:veltrace:badFilename", f'Could not open file "{text}".'
        ) from None
    try:
        status = os.fstat(descriptor)
        if status.st_size > FAR:
            return mmap.mmap(descriptor, 0, prot=mmap.PROT_READ), status
        return read_all(descriptor, status.st_size), status
    finally:
        os.close(descriptor)


def read_all(descriptor, size):
    parts = []
    try:
        while part := os.read(descriptor, max(size + 1, 4096)):
            parts.append(part)
    except IsADirectoryError:
        pass
    return b"".join(parts)


def detect(content):
    if content[:2] == b"\xff\xd8":
        return JPEG
    if content[:4] in SIGNATURES:
        return SIGNATURES[content[:4]]
    raise HostError("ZEPHRA:veltrace:unhandledFileFormat", "File format not recognized")
