// Tags that stand in for baseline tags a directory lacks.
#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "entry/errors.h"
#include "entry/message.h"
#include "tag/tag_id.h"
#include "tag/tiff_tag.h"

namespace veltrace::module {

namespace {

constexpr std::optional<double> kNoValue = std::nullopt;

struct Fallback {
    std::uint16_t tagId;
    std::optional<double> value;
};

// TIFF 6.0, section 8. Kept: ResolutionUnit is 1 ("None") here, not the inch of TIFF 6.0.
constexpr Fallback kFallbacks[] = {
    {tag_id::kNewSubFileType, 0.0},       {tag_id::kCompression, 1.0},
    {tag_id::kThresholding, 1.0},         {tag_id::kFillOrder, 1.0},
    {tag_id::kStripOffsets, kNoValue},    {tag_id::kOrientation, 1.0},
    {tag_id::kSamplesPerPixel, 1.0},      {tag_id::kRowsPerStrip, 4294967295.0},
    {tag_id::kStripByteCounts, kNoValue}, {tag_id::kMinSampleValue, 0.0},
    {tag_id::kXResolution, kNoValue},     {tag_id::kYResolution, kNoValue},
    {tag_id::kPlanarConfiguration, 1.0},  {tag_id::kGrayResponseUnit, 2.0},
    {tag_id::kResolutionUnit, 1.0},       {tag_id::kColormap, kNoValue},
    {tag_id::kTileWidth, kNoValue},       {tag_id::kTileLength, kNoValue},
    {tag_id::kTileOffsets, kNoValue},     {tag_id::kTileByteCounts, kNoValue},
};

[[noreturn]] void refuse(std::uint16_t tagId, const char* constructor) {
    throw VeltraceRecoverableError{
        "ZEPHRA:veltrace:TagFile:defaultField:unrecognizedTagId",
        message("Unrecognized tag ID ", tagId, " for fallback default value constructor",
                constructor, ".\n")};
}

}  // namespace

TiffTag::TiffTag(std::uint16_t tagId, IfdId ifdId) : tagId_(tagId), ifdId_(ifdId) {
    getTagName();
    const auto* fallback = std::ranges::find(kFallbacks, tagId, &Fallback::tagId);
    if (fallback == std::end(kFallbacks)) {
        refuse(tagId, "");
    }
    if (fallback->value) {
        reported_.set({*fallback->value});
    }
    processSpecificTags();
}

TiffTag::TiffTag(std::uint16_t tagId, IfdId ifdId, std::uint32_t sampleCount)
    : tagId_(tagId), ifdId_(ifdId) {
    getTagName();
    if (tagId != tag_id::kBitsPerSample) {
        refuse(tagId, " with supplied value");
    }
    reported_.set(std::vector<double>(sampleCount, 1.0));
    processSpecificTags();
}

TiffTag::TiffTag(std::uint16_t tagId, IfdId ifdId, const std::vector<double>& bitsPerSample)
    : tagId_(tagId), ifdId_(ifdId) {
    if (tagId != tag_id::kMaxSampleValue) {
        refuse(tagId, " with supplied value");
    }
    value_ = TagValue(0, static_cast<std::uint32_t>(bitsPerSample.size()));
    std::vector<double> largest;
    largest.reserve(bitsPerSample.size());
    for (const double bits : bitsPerSample) {
        largest.push_back(std::pow(2.0, bits) - 1.0);
    }
    reported_.set(std::move(largest));
    getTagName();
    processSpecificTags();
}

}  // namespace veltrace::module
