#include "ifd/known_tags.h"

#include <utility>

#include "tag/tag_id.h"

namespace veltrace::module {

namespace {

TiffTag makeShared(std::uint16_t tagId) {
    switch (tagId) {
        case tag_id::kBitsPerSample:
            return {tagId, IfdId::image, KnownTags::kSharedSampleCount};
        case tag_id::kMaxSampleValue:
            return {tagId, IfdId::image, KnownTags::sharedBitsPerSample()};
        default:
            return {tagId, IfdId::image};
    }
}

}  // namespace

const std::vector<TiffTag>& KnownTags::sharedStandIns() {
    static const std::vector<TiffTag> standIns = [] {
        std::vector<TiffTag> tags;
        tags.reserve(kBaselineTags.size());
        for (const std::uint16_t tagId : kBaselineTags) {
            tags.push_back(makeShared(tagId));
        }
        return tags;
    }();
    return standIns;
}

const TiffTag& KnownTags::operator[](std::size_t index) const {
    if (index < readCount_) {
        return own_[index];
    }
    const TiffTag* found = nullptr;
    std::size_t position = readCount_;
    visitStandIns([&](const TiffTag& standIn) {
        if (position++ == index) {
            found = &standIn;
        }
    });
    return *found;
}

void KnownTags::append(TiffTag&& tag) {
    own_.push_back(std::move(tag));
    ++readCount_;
}

void KnownTags::appendStandIn(TiffTag&& tag) {
    own_.push_back(std::move(tag));
}

void KnownTags::appendSharedStandIn(std::size_t baselineIndex) {
    shared_.set(baselineIndex);
}

}  // namespace veltrace::module
