// Words of the enumerated tags: TIFF 6.0, its supplements, and registered private codes.
#pragma once

#include "tag/tag_id.h"
#include "tag/words.h"

namespace veltrace::module {

constexpr Word kCompressionRows[] = {
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
static_assert(std::size(kCompressionRows) == 24 && strictlyAscending(kCompressionRows));

constexpr Word kPhotometricRows[] = {
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
static_assert(std::size(kPhotometricRows) == 13 && strictlyAscending(kPhotometricRows));

constexpr Word kPlanarConfigurationRows[] = {{1, "Chunky"}, {2, "Planar"}};
constexpr Word kResolutionUnitRows[] = {{1, "None"}, {2, "Inch"}, {3, "Centimeter"}};
constexpr Word kPredictorRows[] = {{1, "None"}, {2, "Horizontal differencing"}};
constexpr Word kInkSetRows[] = {{1, "CMYK"}, {2, "not CMYK"}};
constexpr Word kJpegProcRows[] = {
    {1, "Baseline sequential process"},
    {14, "Lossless process with Huffman coding"},
};
constexpr Word kYCbCrPositioningRows[] = {{1, "Centered"}, {2, "Co-sited"}};

constexpr Word kSampleFormatRows[] = {
    {1, "Unsigned integer"},    {2, "Two's complement signed integer"},
    {3, "IEEE floating point"}, {4, "Undefined"},
    {5, "Complex integer"},     {6, "Complex IEEE floating point"},
};

/// The tags whose first value is reported as a word. Kept: the fallbacks differ in case.
constexpr WordTable kWordTables[] = {
    {259, kCompressionRows, "unknown"},
    {262, kPhotometricRows, "unknown"},
    {284, kPlanarConfigurationRows, "Unknown"},
    {296, kResolutionUnitRows, "Unknown"},
    {317, kPredictorRows, "unknown"},
    {332, kInkSetRows, "unknown"},
    {512, kJpegProcRows, "Unknown"},
    {531, kYCbCrPositioningRows, "Unknown"},
};
static_assert(std::ranges::adjacent_find(kWordTables, std::ranges::greater_equal{},
                                         &WordTable::tagId) == std::end(kWordTables));

/// Every value of SampleFormat is reported as a word.
constexpr WordTable kSampleFormat{tag_id::kSampleFormat, kSampleFormatRows, "Unknown"};

/// The words of an enumerated tag; null for any other.
constexpr const WordTable* wordsOf(std::uint16_t tagId) {
    const auto* table = std::ranges::lower_bound(kWordTables, tagId, {}, &WordTable::tagId);
    return table != std::end(kWordTables) && table->tagId == tagId ? table : nullptr;
}

}  // namespace veltrace::module
