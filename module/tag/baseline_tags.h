// The baseline tags that the output of a TIFF file always reports.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace veltrace::module {

/// What an image directory of a TIFF file gets for a baseline tag that it lacks.
struct Fallback {
    enum class Kind : std::uint8_t {
        noTag,
        noValue,          ///< a tag without a value
        number,           ///< a tag with the value `number`
        oneBitPerSample,  ///< BitsPerSample: 1 for each sample
        maxPerBitDepth,   ///< MaxSampleValue: the largest value of each bit depth
    };
    Kind kind = Kind::noTag;
    double number = 0;
};

struct BaselineTag {
    std::uint16_t id;
    std::string_view name;
    Fallback fallback;
};

constexpr Fallback kNoTag{Fallback::Kind::noTag};
constexpr Fallback kNoValue{Fallback::Kind::noValue};
constexpr Fallback kOneBitPerSample{Fallback::Kind::oneBitPerSample};
constexpr Fallback kMaxPerBitDepth{Fallback::Kind::maxPerBitDepth};

constexpr Fallback value(double number) {
    return {Fallback::Kind::number, number};
}

/// In the order of the output's fields. Values: TIFF 6.0, section 8.
constexpr BaselineTag kBaselineTags[] = {
    {254, "NewSubFileType", value(0)},
    {258, "BitsPerSample", kOneBitPerSample},
    {259, "Compression", value(1)},
    {262, "PhotometricInterpretation", kNoTag},
    {273, "StripOffsets", kNoValue},
    {277, "SamplesPerPixel", value(1)},
    {278, "RowsPerStrip", value(4294967295)},
    {279, "StripByteCounts", kNoValue},
    {282, "XResolution", kNoValue},
    {283, "YResolution", kNoValue},
    {296, "ResolutionUnit", value(1)},  // Kept: "None", not the inch of TIFF 6.0
    {320, "Colormap", kNoValue},
    {284, "PlanarConfiguration", value(1)},
    {322, "TileWidth", kNoValue},
    {323, "TileLength", kNoValue},
    {324, "TileOffsets", kNoValue},
    {325, "TileByteCounts", kNoValue},
    {274, "Orientation", value(1)},
    {266, "FillOrder", value(1)},
    {290, "GrayResponseUnit", value(2)},
    {281, "MaxSampleValue", kMaxPerBitDepth},
    {280, "MinSampleValue", value(0)},
    {263, "Thresholding", value(1)},
};

constexpr bool hasFallback(const BaselineTag& tag) {
    return tag.fallback.kind != Fallback::Kind::noTag;
}

constexpr std::size_t kFallbackCount = std::ranges::count_if(kBaselineTags, hasFallback);

/// The baseline tags with a fallback, ascending by id: the order in which they are added.
constexpr std::array<BaselineTag, kFallbackCount> kFallbackTags = [] {
    std::array<BaselineTag, kFallbackCount> tags{};
    std::ranges::copy_if(kBaselineTags, tags.begin(), hasFallback);
    std::ranges::sort(tags, {}, &BaselineTag::id);
    return tags;
}();

/// Index of a tag in `kFallbackTags`; `kFallbackCount` for any other tag.
constexpr std::size_t fallbackIndex(std::uint16_t tagId) {
    const auto* tag = std::ranges::lower_bound(kFallbackTags, tagId, {}, &BaselineTag::id);
    return tag != kFallbackTags.end() && tag->id == tagId
               ? static_cast<std::size_t>(tag - kFallbackTags.begin())
               : kFallbackCount;
}

}  // namespace veltrace::module
