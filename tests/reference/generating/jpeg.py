"""JPEG files around a TIFF structure."""

IDENTIFIERS = [b"Exif\0\0"] * 12 + [b"Exif\xff\xff", b"exif\0\0", b"XMP\0\0\0", b"http:/"]
IDENTIFIERS += [b"\0\0\0\0\0\0", b'E"%s\xe9\0', b"Exi\0f\0"]
EXIF_SEGMENT = b"\xff\xe1\0\x10Exif\0\0II*\0\x08\0\0\0"
CODES = [0xE0, 0xE0, 0xE2, 0xFE, 0xC4, 0xC0, 0xDD, 0xEE, 0xE1, 0xDA, 0xDB]


def jpeg_file(rng, tiff):
    """An APP1 segment behind others; now and then the walk does not reach it."""
    parts = [b"\xff\xd8"]
    for _ in range(rng.choice((0, 0, 1, 1, 2, 4))):
        parts.append(segment_before(rng))
    parts.append(segment(0xE1, rng.choice(IDENTIFIERS) + tiff))
    parts.append(rng.choice((b"", b"\xff\xd9", b"\xff\xdb\0\x04ab\xff\xd9")))
    return b"".join(parts)


def segment_before(rng):
    chance = rng.random()
    if chance < 0.02:
        return segment(rng.choice((0xDA, 0xDB, 0xE1)), rng.randbytes(rng.randrange(12)))
    if chance < 0.04:
        return marker_with_length(0xE0, rng.choice((0, 1, 3, 0xFFFF)))
    if chance < 0.05:
        return rng.choice((b"\xff", b"\xff\xff", b"\0", b"\xff\xd8", b"\xff\xd0", b"\x80\xe0"))
    code = rng.choice([code for code in CODES if code not in (0xE1, 0xDA, 0xDB)])
    return segment(code, rng.randbytes(rng.randrange(rng.choice((30, 30, 30, 2000)))))


def segment(code, payload):
    return marker_with_length(code, min(len(payload) + 2, 0xFFFF)) + payload


def marker_with_length(code, length):
    return bytes((0xFF, code)) + length.to_bytes(2, "big")


def stray_walk(rng):
    """Markers and no directory; the last one is cut off anywhere."""
    parts = [b"\xff\xd8", *(segment_before(rng) for _ in range(rng.randrange(3)))]
    last = rng.choice((b"\xff\xda\0\2", b"\xff\xdb\0\2", b"", EXIF_SEGMENT, EXIF_SEGMENT))
    parts.append(last[: rng.randrange(len(last) + 1)])
    return b"".join(parts)
