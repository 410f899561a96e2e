// The baseline tags whose presence a directory remembers.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

#include "tag/tag_id.h"

namespace veltrace {

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

/// Position of a tag in `kBaselineTags`.
constexpr std::optional<std::size_t> baselineIndex(std::uint16_t tagId) {
    const auto* const place = std::ranges::lower_bound(kBaselineTags, tagId);
    if (place == kBaselineTags.end() || *place != tagId) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(place - kBaselineTags.begin());
}

}  // namespace veltrace
