"""The names of tags, by kind of directory."""

from tag_vocabulary import GPS_NAMES, IMAGE_NAMES, INTEROPERABILITY_NAMES

# By kind: image, GPS, Interoperability, Exif.
TABLES = [IMAGE_NAMES, GPS_NAMES, INTEROPERABILITY_NAMES, IMAGE_NAMES]


def name_of(tag_id, ifd_id):
    """Empty for an unknown tag."""
    return TABLES[ifd_id].get(tag_id, "")
