"""Files to read, each written by an encoder that is not this project's."""

import datetime
import subprocess

import numpy
import tifffile
from PIL import Image

ENCODERS = {}


def encoder(function):
    """Registers a function that writes the file of its name to the path that it is given."""
    ENCODERS[function.__name__] = function
    return function


def run(*command):
    subprocess.run([str(word) for word in command], check=True, stdout=subprocess.DEVNULL)


def gradient(height, width, dtype=numpy.uint8):
    rows, columns = numpy.mgrid[0:height, 0:width]
    return ((rows * 255 // height + columns * 255 // width) // 2).astype(dtype)


def colours(height, width):
    gray = gradient(height, width)
    return numpy.dstack([gray, 255 - gray, gray // 2])


def colour_strips(path):
    """An uncompressed colour image in two strips, a start for tools that only rewrite."""
    tifffile.imwrite(path, colours(40, 48), photometric="rgb", metadata=None, software="strips",
                     rowsperstrip=20, resolution=((720, 10), (300, 1)))
    return path


# libtiff-tools

def tiffcp(path, *options, start=colour_strips):
    strips = start(path.with_suffix(".strips"))
    run("tiffcp", *options, strips, path)


@encoder
def tiffcp_lzw_little(path):
    tiffcp(path, "-L", "-c", "lzw:2")


@encoder
def tiffcp_zip_big(path):
    tiffcp(path, "-B", "-c", "zip:2")


@encoder
def tiffcp_packbits_planes(path):
    tiffcp(path, "-c", "packbits", "-p", "separate", "-r", "8")


@encoder
def tiffcp_tiles_big(path):
    tiffcp(path, "-B", "-t", "-w", "16", "-l", "32", "-c", "zip")


@encoder
def tiffcp_bigtiff(path):
    tiffcp(path, "-8", "-c", "none")


@encoder
def tiffcp_two_pages(path):
    first = colour_strips(path.with_suffix(".first"))
    second = path.with_suffix(".second")
    Image.fromarray(gradient(10, 20)).save(second, "tiff", compression="packbits")
    run("tiffcp", "-B", first, second, path)


@encoder
def tiffset_tags(path):
    colour_strips(path)
    run("tiffset", "-s", "270", "described later", path)
    run("tiffset", "-s", "315", "An Artist", path)
    run("tiffset", "-s", "297", "2", "5", path)
    run("tiffset", "-s", "33432", "Nobody", path)


# ImageMagick

def convert(path, *options, endian="lsb"):
    run("convert", "-size", "40x30", *options, "-define", f"tiff:endian={endian}", f"tiff:{path}")


@encoder
def convert_gray16_big(path):
    convert(path, "gradient:", "-depth", "16", "-compress", "zip", endian="msb")


@encoder
def convert_group4(path):
    convert(path, "xc:white", "-monochrome", "-compress", "group4")


@encoder
def convert_fax(path):
    convert(path, "xc:white", "-monochrome", "-compress", "fax", endian="msb")


@encoder
def convert_palette(path):
    convert(path, "gradient:red-blue", "-colors", "16", "-type", "palette", "-compress", "lzw")


@encoder
def convert_cmyk_big(path):
    convert(path, "xc:orange", "-colorspace", "cmyk", "-density", "150x75", "-units",
            "PixelsPerCentimeter", endian="msb")


@encoder
def convert_alpha(path):
    convert(path, "xc:#ff000080", "-depth", "8", "-set", "tiff:artist", "An Artist", "-set",
            "comment", "with alpha", "-compress", "rle")


@encoder
def convert_pages(path):
    convert(path, "xc:red", "xc:green", "xc:blue", "-depth", "8", "-compress", "none")


# tifffile

@encoder
def tifffile_big_endian(path):
    tifffile.imwrite(path, colours(24, 32), byteorder=">", photometric="rgb", metadata=None,
                     description="a ramp", software="a test",
                     datetime=datetime.datetime(2024, 2, 29, 12, 30, 15),
                     resolution=((300, 1), (1500, 10)), resolutionunit="inch")


@encoder
def tifffile_float_planes(path):
    data = numpy.stack([gradient(8, 9, numpy.float32)] * 3)
    tifffile.imwrite(path, data, photometric="rgb", planarconfig="separate", metadata=None)


@encoder
def tifffile_double(path):
    tifffile.imwrite(path, gradient(8, 9, numpy.float64), byteorder=">", metadata=None)


@encoder
def tifffile_signed(path):
    tifffile.imwrite(path, gradient(8, 9, numpy.int16), metadata=None)


@encoder
def tifffile_pyramid(path):
    with tifffile.TiffWriter(path, byteorder=">") as writer:
        writer.write(gradient(32, 32), subifds=1, metadata=None, software="levels")
        writer.write(gradient(16, 16), subfiletype=1, metadata=None, software="level 1")


@encoder
def tifffile_bigtiff(path):
    tifffile.imwrite(path, colours(24, 32), bigtiff=True, photometric="rgb", metadata=None,
                     description="a ramp in 64 bits", software="a test", rowsperstrip=12)


BYTE, ASCII, SHORT, LONG, RATIONAL, SBYTE, UNDEFINED = 1, 2, 3, 4, 5, 6, 7
SSHORT, SLONG, SRATIONAL, FLOAT, DOUBLE = 8, 9, 10, 11, 12

EVERY_TYPE = [
    (269, ASCII, 0, "a document", True),
    (280, SHORT, 1, 3, True),
    (285, ASCII, 0, "p", True),
    (286, RATIONAL, 1, (355, 113), True),
    (290, SHORT, 1, 3, True),
    (318, RATIONAL, 2, (3127, 10000, 329, 1000), True),
    (333, ASCII, 0, "cyan\0magenta", True),
    (336, BYTE, 2, (0, 255), True),
    (340, SSHORT, 1, -7, True),
    (341, DOUBLE, 1, 1e100, True),
    (33434, RATIONAL, 1, (1, 3), True),
    (33550, DOUBLE, 3, (0.1, -0.25, 3.0), True),
    (37379, SRATIONAL, 1, (-7, 3), True),
    (37380, SRATIONAL, 1, (2, -3), True),
    (37439, DOUBLE, 1, 179.5, True),
    (42113, ASCII, 0, "-9999", True),
    (50714, FLOAT, 2, (1.5, -0.1), True),
    (65000, ASCII, 0, "private", True),
    (65001, SBYTE, 3, (-1, -128, 127), True),
    (65002, SLONG, 2, (-2147483648, 2147483647), True),
    (65003, FLOAT, 1, 0.1, True),
    (65004, SHORT, 2, (1, 65535), True),
    (65005, UNDEFINED, 5, b"\0\1\2\3\xff", True),
    (65006, ASCII, 0, "ab", True),
]


@encoder
def tifffile_every_type_little(path):
    tifffile.imwrite(path, gradient(8, 9), metadata=None, extratags=EVERY_TYPE)


@encoder
def tifffile_every_type_big(path):
    tifffile.imwrite(path, gradient(8, 9), byteorder=">", metadata=None, extratags=EVERY_TYPE)


# Pillow

def pillow(path, mode, **settings):
    Image.fromarray(colours(20, 30)).convert(mode).save(path, "tiff", **settings)


@encoder
def pillow_bilevel(path):
    pillow(path, "1", compression="group3")


@encoder
def pillow_palette(path):
    pillow(path, "P", compression="packbits")


@encoder
def pillow_lab(path):
    Image.new("LAB", (6, 5), (50, 128, 128)).save(path, "tiff")


@encoder
def pillow_ycbcr(path):
    pillow(path, "YCbCr")


@encoder
def pillow_float(path):
    pillow(path, "F", dpi=(72.5, 100))


@encoder
def pillow_deflate_texts(path):
    pillow(path, "RGBA", compression="tiff_adobe_deflate", description="four samples",
           software="a test", artist="An Artist", copyright="none")


@encoder
def pillow_pages(path):
    first, *others = (Image.fromarray(gradient(8 * n, 10 * n)) for n in (1, 2, 3))
    first.save(path, "tiff", save_all=True, append_images=others)


# ExifTool

CAMERA = [
    "-Make=Sample", "-Model=Box 1", "-Orientation#=6", "-Copyright=Nobody",
    "-ExposureTime=1/125", "-FNumber=2.8", "-ISO=200", "-ExposureCompensation=-1/3",
    "-ShutterSpeedValue=1/125", "-ApertureValue=2.8", "-BrightnessValue=-1.5",
    "-MaxApertureValue=2", "-SubjectDistance=4.5", "-FocalLength=35", "-EXIF:Flash#=16",
    "-MeteringMode#=5", "-LightSource#=4", "-ExposureProgram#=2", "-SubjectArea=10 20 30 40",
    "-DateTimeOriginal=2024:02:29 12:30:15", "-SubSecTime=25", "-UserComment=hello",
    "-ExifImageWidth=48", "-ExifImageHeight=40", "-FileSource#=3", "-SceneType#=1",
    "-WhiteBalance#=0", "-DigitalZoomRatio=1.5", "-ImageUniqueID=0123456789abcdef",
    "-LensInfo=35 35 2.8 2.8", "-LensModel=A Lens", "-InteropIndex=R98",
    "-FocalPlaneXResolution=3000.5", "-FocalPlaneResolutionUnit#=2", "-SensingMethod#=2",
    "-GPSLatitude=48.8583", "-GPSLatitudeRef=N", "-GPSLongitude=2.2945", "-GPSLongitudeRef=E",
    "-GPSAltitude=35.5", "-GPSAltitudeRef#=0", "-GPSDateStamp=2024:02:29",
    "-GPSTimeStamp=11:30:15", "-GPSDOP=2.5", "-GPSMapDatum=WGS-84", "-GPSImgDirection=271.25",
    "-GPSImgDirectionRef=T", "-GPSProcessingMethod=GPS", "-GPSDifferential#=0",
    "-GPSHPositioningError=3.5",
]


def exiftool(path, *assignments):
    run("exiftool", "-q", "-overwrite_original", *assignments, path)


@encoder
def exiftool_camera_little(path):
    colour_strips(path)
    exiftool(path, *CAMERA)


@encoder
def exiftool_camera_big(path):
    tifffile_big_endian(path)
    exiftool(path, *CAMERA)


@encoder
def exiftool_blocks(path):
    pillow(path, "RGB")
    exiftool(path, "-XMP-dc:Title=A title", "-IPTC:Keywords=one", "-IPTC:Keywords=two",
             "-XResolution=300", "-YResolution=300", "-ResolutionUnit#=3")


@encoder
def exiftool_zero_denominator(path):
    pillow(path, "RGB")
    exiftool(path, "-ExposureTime=undef", "-FNumber=undef", "-ExposureCompensation=undef",
             "-LensInfo=undef undef 2.8 4")
