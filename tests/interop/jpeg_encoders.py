"""JPEG files to compare readers with: tags of independent encoders, and damage done to them."""

from encoders import colours, exiftool
from PIL import ExifTags, Image

JPEG_ENCODERS = {}


def jpeg(function):
    """Registers a function that writes the file of its name to the path that it is given."""
    JPEG_ENCODERS[function.__name__] = function
    return function


def picture(path, **settings):
    Image.fromarray(colours(24, 32)).save(path, "jpeg", **settings)


# ExifTool

@jpeg
def exposure(path):
    picture(path)
    exiftool(path, "-ShutterSpeedValue=1/125", "-ApertureValue=2.8", "-MaxApertureValue=2",
             "-ExposureTime=inf", "-FNumber=undef", "-LensInfo=35 35 undef 2.8",
             "-UserComment=\N{GREEK SMALL LETTER PI}", "-CFAPattern#=2 2 0 1 1 2",
             "-XPTitle=\N{GREEK SMALL LETTER PI}", "-Artist=Nobody", "-SubSecTime=25")


@jpeg
def position(path):
    picture(path)
    exiftool(path, "-UserComment=plain", "-GPSProcessingMethod=GPS", "-GPSLatitude=-33.85",
             "-GPSLatitudeRef=S", "-GPSDestLongitude=151.2", "-GPSTimeStamp=23:59:59.25",
             "-InteropIndex=R98", "-ExifByteOrder=II")


# Pillow

@jpeg
def texts(path):
    exif = Image.Exif()
    exif[ExifTags.Base.ImageDescription] = ""
    exif[ExifTags.Base.Make] = "Sample  "
    exif[ExifTags.Base.Model] = "Box\0hidden"
    exif[ExifTags.Base.Artist] = b"W\xf6rd"
    exif[ExifTags.Base.Copyright] = "One\0Two"
    picture(path, exif=exif)


@jpeg
def blocks(path):
    exif = Image.Exif()
    exif[ExifTags.Base.TileOffsets] = (100, 200, 300)
    exif[50898] = bytes(64)
    exif[ExifTags.IFD.Exif] = {ExifTags.Base.MakerNote: b"\1\2\3\xfe"}
    picture(path, exif=exif)


# Files that encoders made and then suffered damage

def one_text(path):
    exif = Image.Exif()
    exif[ExifTags.Base.Software] = "first half, second half"
    picture(path, exif=exif)
    return path.read_bytes()


def segment_bounds(content):
    """Where the Exif segment begins and ends."""
    start = content.index(b"\xff\xe1")
    return start, start + 2 + int.from_bytes(content[start + 2:start + 4], "big")


def segment(payload):
    return b"\xff\xe1" + (len(payload) + 2).to_bytes(2, "big") + payload


@jpeg
def split_segment(path):
    """The Exif block goes on in a second segment, in the middle of a text."""
    content = one_text(path)
    start, end = segment_bounds(content)
    middle = content.index(b"second half")
    path.write_bytes(content[:start] + segment(content[start + 4:middle])
                     + segment(b"Exif\0\0" + content[middle:end]) + content[end:])


@jpeg
def cut_off(path):
    content = one_text(path)
    _, end = segment_bounds(content)
    path.write_bytes(content[:end + 5])


@jpeg
def offset_beyond(path):
    """The offset of a value points behind the segment."""
    picture(path)
    exiftool(path, "-FNumber=2.8", "-ExifByteOrder=MM")
    content = path.read_bytes()
    start, end = segment_bounds(content)
    offset_at = content.index((33437).to_bytes(2, "big") + b"\0\5\0\0\0\1") + 8
    offset = end + 8 - (start + 10)  # From the TIFF header.
    path.write_bytes(content[:offset_at] + offset.to_bytes(4, "big") + content[offset_at + 4:])


@jpeg
def repeated_tag(path):
    """Two entries for the fraction of the second, of which the module keeps the last."""
    picture(path)
    exiftool(path, "-SubSecTime=25", "-SubSecTimeOriginal=75", "-ExifByteOrder=MM")
    content = path.read_bytes()
    path.write_bytes(content.replace((37521).to_bytes(2, "big") + b"\0\2",
                                     (37520).to_bytes(2, "big") + b"\0\2"))
