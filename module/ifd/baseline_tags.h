// The baseline tags whose presence a directory remembers.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

#include "tag/tag_id.h"

namespace veltrace::module {

/// Ascending. An image directory of a TIFF file that lacks one gets a fallback tag, in this order.
constexpr std::array<std::uint16_t, 22> kBaselineTags{
    tag_id::kNewSubFileType,   tag_id::kBitsPerSample,   tag_id::kCompression,
    tag_id::kThresholding,     tag_id::kFillOrder,       tag_id::kStripOffsets,
    tag_id::kOrientation,      tag_id::kSamplesPerPixel, tag_id::kRowsPerStrip,
    tag_id::kStripByteCounts,  tag_id::kMinSampleValue,  tag_id::kMaxSampleValue,
    tag_id::kXResolution,      tag_id::kYResolution,     tag_id::kPlanarConfiguration,
    tag_id::kGrayResponseUnit, tag_id::kResolutionUnit,  tag_id::kColormap,
    tag_id::kTileWidth,        tag_id::kTileLength,      tag_id::kTileOffsets,
    tag_id::kTileByteCounts,
};
static_assert(std::ranges::adjacent_find(kBaselineTags, std::ranges::greater_equal{}) ==
              kBaselineTags.end());

/// Position + 1 of each id from the first baseline tag to the last; 0 for others between them.
using BaselinePlaces =
    std::array<std::uint8_t, std::size_t{kBaselineTags.back()} - kBaselineTags.front() + 1>;

constexpr BaselinePlaces baselinePlaces() {
    BaselinePlaces places{};
    for (std::size_t i = 0; i < kBaselineTags.size(); ++i) {
        places[std::size_t{kBaselineTags[i]} - kBaselineTags.front()] =
            static_cast<std::uint8_t>(i + 1);
    }
    return places;
}

constexpr BaselinePlaces kBaselinePlaces = baselinePlaces();

/// Position of a tag in `kBaselineTags`.
constexpr std::optional<std::size_t> baselineIndex(std::uint16_t tagId) {
    if (tagId < kBaselineTags.front() || tagId > kBaselineTags.back()) {
        return std::nullopt;
    }
    const std::size_t place = kBaselinePlaces[std::size_t{tagId} - kBaselineTags.front()];
    return place != 0 ? std::optional(place - 1) : std::nullopt;
}

}  // namespace veltrace::module
