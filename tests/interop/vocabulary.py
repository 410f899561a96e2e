"""The names and words of the module for the tags that the files here hold."""

IMAGE_AND_EXIF_NAMES = {
    254: "NewSubFileType", 256: "Width", 257: "Height", 258: "BitsPerSample", 259: "Compression",
    262: "PhotometricInterpretation", 263: "Thresholding", 266: "FillOrder", 269: "DocumentName",
    270: "ImageDescription", 271: "Make", 272: "Model", 273: "StripOffsets", 274: "Orientation",
    277: "SamplesPerPixel", 278: "RowsPerStrip", 279: "StripByteCounts", 280: "MinSampleValue",
    281: "MaxSampleValue", 282: "XResolution", 283: "YResolution", 284: "PlanarConfiguration",
    285: "PageName", 286: "XPosition", 290: "GrayResponseUnit", 292: "T4Options", 293: "T6Options",
    296: "ResolutionUnit", 297: "PageNumber", 305: "Software", 306: "DateTime", 315: "Artist",
    317: "Predictor", 318: "WhitePoint", 319: "PrimaryChromaticities", 320: "Colormap",
    322: "TileWidth", 323: "TileLength", 324: "TileOffsets", 325: "TileByteCounts",
    332: "InkSet", 333: "InkNames", 336: "DotRange", 338: "ExtraSamples", 339: "SampleFormat",
    340: "SMinSampleValue", 341: "SMaxSampleValue", 529: "YCbCrCoefficients",
    530: "YCbCrSubsampling", 531: "YCbCrPositioning", 532: "ReferenceBlackWhite", 700: "XMP",
    33432: "Copyright", 33434: "ExposureTime", 33437: "FNumber", 33550: "ModelPixelScaleTag",
    33723: "ITPC", 34850: "ExposureProgram", 34855: "ISOSpeedRatings", 36864: "ExifVersion",
    36867: "DateTimeOriginal", 36868: "DateTimeDigitized", 37121: "ComponentsConfiguration",
    37377: "ShutterSpeedValue", 37378: "ApertureValue", 37379: "BrightnessValue",
    37380: "ExposureBiasValue", 37381: "MaxApertureValue", 37382: "SubjectDistance",
    37383: "MeteringMode", 37384: "LightSource", 37385: "Flash", 37386: "FocalLength",
    37396: "SubjectArea", 37439: "StoNITS", 37510: "UserComment", 37520: "SubsecTime",
    40960: "FlashpixVersion", 40961: "ColorSpace", 40962: "CPixelXDimension",
    40963: "CPixelYDimension", 41486: "FocalPlaneXResolution", 41488: "FocalPlaneResolutionUnit",
    41495: "SensingMethod", 41728: "FileSource", 41729: "SceneType", 41987: "WhiteBalance",
    41988: "DigitalZoomRatio", 42016: "ImageUniqueID", 42113: "GDAL_NODATA", 50714: "BlackLevel",
}

GPS_NAMES = {
    0: "GPSVersionID", 1: "GPSLatitudeRef", 2: "GPSLatitude", 3: "GPSLongitudeRef",
    4: "GPSLongitude", 5: "GPSAltitudeRef", 6: "GPSAltitude", 7: "GPSTimeStamp", 11: "GPSDOP",
    16: "GPSImgDirectionRef", 17: "GPSImgDirection", 18: "GPSMapDatum",
    27: "GPSProcessingMethod", 29: "GPSDateStamp", 30: "GPSDifferential",
}

INTEROPERABILITY_NAMES = {1: "InteroperabilityIndex", 2: "InteroperabilityVersion"}

# Tags that the module has no name for: they go to UnknownTags.
UNKNOWN = {
    "IFD0": {65000, 65001, 65002, 65003, 65004, 65005, 65006},
    "ExifIFD": {42034, 42036},
    "GPS": {31},
}


def names_of(place):
    return {"GPS": GPS_NAMES, "InteropIFD": INTEROPERABILITY_NAMES}.get(
        place, IMAGE_AND_EXIF_NAMES)


# Enumerated codes that are reported as words.
WORDS = {
    "Compression": {1: "Uncompressed", 3: "Group 3 Fax", 4: "Group 4 Fax", 5: "LZW", 8: "Deflate",
                    32773: "PackBits", 32946: "Deflate"},
    "PhotometricInterpretation": {0: "WhiteIsZero", 1: "BlackIsZero", 2: "RGB", 3: "RGB Palette",
                                  5: "CMYK", 6: "YCbCr", 8: "CIELab"},
    "PlanarConfiguration": {1: "Chunky", 2: "Planar"},
    "ResolutionUnit": {1: "None", 2: "Inch", 3: "Centimeter"},
    "Predictor": {1: "None", 2: "Horizontal differencing", 3: "unknown"},
    "InkSet": {1: "CMYK", 2: "not CMYK"},
    "YCbCrPositioning": {1: "Centered", 2: "Co-sited"},
    "SampleFormat": {1: "Unsigned integer", 2: "Two's complement signed integer",
                     3: "IEEE floating point"},
}
GRAY_RESPONSE_UNITS = {1: 0.1, 2: 0.01, 3: 0.001, 4: 0.0001, 5: 0.00001}

COLOR_TYPES = {0: "grayscale", 1: "grayscale", 2: "truecolor", 3: "RGB Palette", 5: "CMYK",
               6: "YCbCr", 8: "CIELab"}

# What an image directory without the tag reports; MaxSampleValue follows from BitsPerSample.
FALLBACKS = {
    "NewSubFileType": 0, "BitsPerSample": 1, "Compression": "Uncompressed", "Thresholding": 1,
    "FillOrder": 1, "Orientation": 1, "SamplesPerPixel": 1, "RowsPerStrip": 4294967295,
    "MinSampleValue": 0, "PlanarConfiguration": "Chunky", "GrayResponseUnit": 0.01,
    "ResolutionUnit": "None",
}

# Fields of an image directory that no tag of the file stands for.
GENERAL = {"Filename", "FileModDate", "FileSize", "Format", "BitDepth", "ColorType",
           "FormatSignature", "ByteOrder"}


def max_sample_value(bits_per_sample):
    values = [2.0 ** bits - 1 for bits in as_list(bits_per_sample)]
    return values[0] if len(values) == 1 else values


def as_list(value):
    return value if isinstance(value, list) else [value]
