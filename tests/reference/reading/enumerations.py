"""The words of enumerated codes."""

COMPRESSION = {
    1: "Uncompressed",
    2: "CCITT 1D",
    3: "Group 3 Fax",
    4: "Group 4 Fax",
    5: "LZW",
    6: "OJPEG",
    7: "JPEG",
    8: "Deflate",
    32766: "Next",
    32771: "CCITT RLEW",
    32773: "PackBits",
    32809: "ThunderScan RLE",
    32895: "IT8 CT with padding",
    32896: "IT8 Linework RLE",
    32897: "IT8 Monochrome Picture",
    32898: "IT8 Binary Line Art",
    32908: "Pixar companded 10bit LZW",
    32909: "Pixar companded 11bit ZIP",
    32946: "Deflate",
    32947: "DCS",
    34661: "ISO JBIG",
    34676: "SGI Log Luminance RLE",
    34677: "SGI Log 24-bit Packed",
    34712: "JPEG2000",
}

PHOTOMETRIC = {
    0: "WhiteIsZero",
    1: "BlackIsZero",
    2: "RGB",
    3: "RGB Palette",
    4: "Transparency Mask",
    5: "CMYK",
    6: "YCbCr",
    8: "CIELab",
    9: "ICCLab",
    10: "ITULab",
    32803: "CFA",
    32845: "LogLuv",
    34892: "LinearRaw",
}

# By tag: words by code, and the word of every other code.
WORDS = {
    259: (COMPRESSION, "unknown"),
    262: (PHOTOMETRIC, "unknown"),
    284: ({1: "Chunky", 2: "Planar"}, "Unknown"),
    296: ({1: "None", 2: "Inch", 3: "Centimeter"}, "Unknown"),
    317: ({1: "None", 2: "Horizontal differencing"}, "unknown"),
    332: ({1: "CMYK", 2: "not CMYK"}, "unknown"),
    512: (
        {1: "Baseline sequential process", 14: "Lossless process with Huffman coding"},
        "Unknown",
    ),
    531: ({1: "Centered", 2: "Co-sited"}, "Unknown"),
}

SAMPLE_FORMATS = {
    1: "Unsigned integer",
    2: "Two's complement signed integer",
    3: "IEEE floating point",
    4: "Undefined",
    5: "Complex integer",
    6: "Complex IEEE floating point",
}

# Photometric codes as ColorType has them; any other code is reported as the number it is.
COLOR_TYPES = {
    0: "grayscale",
    1: "grayscale",
    2: "truecolor",
    3: "RGB Palette",
    4: "Transparency Mask",
    5: "CMYK",
    6: "YCbCr",
    8: "CIELab",
    9: "ICCLab",
    10: "ITULab",
    32803: "CFA",
    32844: "LogL",
    32845: "LogLuv",
    34892: "LinearRaw",
}
