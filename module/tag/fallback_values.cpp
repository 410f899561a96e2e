// Constructs fallback tags, for baseline tags that a directory lacks.
#include <cmath>

#include "entry/errors.h"
#include "entry/message.h"
#include "tag/baseline_tags.h"
#include "tag/tag_id.h"
#include "tag/tiff_tag.h"

namespace veltrace::module {

namespace {

[[noreturn]] void reject(std::uint16_t tagId, const char* constructor) {
    throw VeltraceRecoverableError{
        "ZEPHRA:veltrace:TagFile:defaultField:unrecognizedTagId",
        message("Unrecognized tag ID ", tagId, " for fallback default value constructor",
                constructor, ".\n")};
}

Fallback fallbackOf(std::uint16_t tagId) {
    const std::size_t index = fallbackIndex(tagId);
    return index != kFallbackCount ? kFallbackTags[index].fallback : kNoTag;
}

}  // namespace

TiffTag::TiffTag(std::uint16_t tagId, IfdId ifdId) : tagId_(tagId), ifdId_(ifdId) {
    getTagName();
    const Fallback fallback = fallbackOf(tagId);
    if (fallback.kind == Fallback::Kind::number) {
        outputValues_.push_back(fallback.number);
    } else if (fallback.kind != Fallback::Kind::noValue) {
        reject(tagId, "");
    }
    processSpecificTags();
}

TiffTag::TiffTag(std::uint16_t tagId, IfdId ifdId, std::uint32_t sampleCount)
    : tagId_(tagId), ifdId_(ifdId) {
    getTagName();
    if (tagId != tag_id::kBitsPerSample) {
        reject(tagId, " with supplied value");
    }
    outputValues_.assign(sampleCount, 1.0);
    processSpecificTags();
}

TiffTag::TiffTag(std::uint16_t tagId, IfdId ifdId, const std::vector<double>& bitsPerSample)
    : tagId_(tagId), count_(bitsPerSample.size()), ifdId_(ifdId) {
    if (tagId != tag_id::kMaxSampleValue) {
        reject(tagId, " with supplied value");
    }
    outputValues_.reserve(bitsPerSample.size());
    for (const double bits : bitsPerSample) {
        outputValues_.push_back(std::pow(2.0, bits) - 1.0);
    }
    getTagName();
    processSpecificTags();
}

}  // namespace veltrace::module
