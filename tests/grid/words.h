// The words of codes, written down from the formats' tables and independently of the module.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace veltrace::test {

struct WordRow {
    std::int64_t code;
    std::string_view word;
};

struct WordTable {
    std::uint16_t tag;
    std::span<const WordRow> rows;
    std::string_view otherwise;
};

inline constexpr WordRow kCompressionWords[] = {
    {1, "Uncompressed"},
    {2, "CCITT 1D"},
    {3, "Group 3 Fax"},
    {4, "Group 4 Fax"},
    {5, "LZW"},
    {6, "OJPEG"},
    {7, "JPEG"},
    {8, "Deflate"},
    {32766, "Next"},
    {32771, "CCITT RLEW"},
    {32773, "PackBits"},
    {32809, "ThunderScan RLE"},
    {32895, "IT8 CT with padding"},
    {32896, "IT8 Linework RLE"},
    {32897, "IT8 Monochrome Picture"},
    {32898, "IT8 Binary Line Art"},
    {32908, "Pixar companded 10bit LZW"},
    {32909, "Pixar companded 11bit ZIP"},
    {32946, "Deflate"},
    {32947, "DCS"},
    {34661, "ISO JBIG"},
    {34676, "SGI Log Luminance RLE"},
    {34677, "SGI Log 24-bit Packed"},
    {34712, "JPEG2000"},
};
inline constexpr WordRow kPhotometricWords[] = {
    {0, "WhiteIsZero"},
    {1, "BlackIsZero"},
    {2, "RGB"},
    {3, "RGB Palette"},
    {4, "Transparency Mask"},
    {5, "CMYK"},
    {6, "YCbCr"},
    {8, "CIELab"},
    {9, "ICCLab"},
    {10, "ITULab"},
    {32803, "CFA"},
    {32845, "LogLuv"},
    {34892, "LinearRaw"},
};
inline constexpr WordRow kPlanarWords[] = {{1, "Chunky"}, {2, "Planar"}};
inline constexpr WordRow kResolutionUnitWords[] = {{1, "None"}, {2, "Inch"}, {3, "Centimeter"}};
inline constexpr WordRow kPredictorWords[] = {{1, "None"}, {2, "Horizontal differencing"}};
inline constexpr WordRow kInkSetWords[] = {{1, "CMYK"}, {2, "not CMYK"}};
inline constexpr WordRow kJpegProcWords[] = {{1, "Baseline sequential process"},
                                             {14, "Lossless process with Huffman coding"}};
inline constexpr WordRow kPositioningWords[] = {{1, "Centered"}, {2, "Co-sited"}};

/// By tag, with the word of any other code.
inline constexpr WordTable kWordTables[] = {
    {259, kCompressionWords, "unknown"}, {262, kPhotometricWords, "unknown"},
    {284, kPlanarWords, "Unknown"},      {296, kResolutionUnitWords, "Unknown"},
    {317, kPredictorWords, "unknown"},   {332, kInkSetWords, "unknown"},
    {512, kJpegProcWords, "Unknown"},    {531, kPositioningWords, "Unknown"},
};

/// Of every value of a SampleFormat tag.
inline constexpr WordRow kSampleFormatWords[] = {
    {1, "Unsigned integer"},    {2, "Two's complement signed integer"},
    {3, "IEEE floating point"}, {4, "Undefined"},
    {5, "Complex integer"},     {6, "Complex IEEE floating point"},
};

/// ColorType of an image without colour map; any other code is reported as a number.
inline constexpr WordRow kColorTypes[] = {
    {0, "grayscale"},
    {1, "grayscale"},
    {2, "truecolor"},
    {3, "RGB Palette"},
    {4, "Transparency Mask"},
    {5, "CMYK"},
    {6, "YCbCr"},
    {8, "CIELab"},
    {9, "ICCLab"},
    {10, "ITULab"},
    {32803, "CFA"},
    {32844, "LogL"},
    {32845, "LogLuv"},
    {34892, "LinearRaw"},
};

}  // namespace veltrace::test
