// The known tags of a directory.
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "ifd/baseline_tags.h"
#include "tag/tiff_tag.h"

namespace veltrace::module {

/// Tags that were read, in file order, and then tags that stand in for baseline tags, in the order
/// of those. A stand-in that is the same in every directory is shared by all: a file may have
/// thousands of directories, which differ in few tags.
class KnownTags {
public:
    /// What a range-based for asks for: all tags in order.
    class Iterator {
    public:
        const TiffTag& operator*() const { return (*tags_)[index_]; }
        Iterator& operator++() {
            ++index_;
            return *this;
        }
        friend bool operator==(const Iterator&, const Iterator&) = default;

    private:
        friend class KnownTags;
        Iterator(const KnownTags& tags, std::size_t index) : tags_(&tags), index_(index) {}

        const KnownTags* tags_;
        std::size_t index_;
    };

    [[nodiscard]] std::size_t size() const { return own_.size() + shared_.count(); }
    [[nodiscard]] bool empty() const { return size() == 0; }
    /// The tag at `index`, which must be less than `size()`.
    [[nodiscard]] const TiffTag& operator[](std::size_t index) const;
    [[nodiscard]] const TiffTag& front() const { return (*this)[0]; }
    [[nodiscard]] Iterator begin() const { return {*this, 0}; }
    [[nodiscard]] Iterator end() const { return {*this, size()}; }

    /// Makes room for this many tags.
    void reserve(std::size_t count) { own_.reserve(count); }
    /// Appends a tag that was read. All of them come before all stand-ins.
    void append(TiffTag&& tag);
    /// Appends a stand-in, in the order of `kBaselineTags`: one that is this directory's alone, or
    /// the shared one of an image directory.
    void appendStandIn(TiffTag&& tag);
    void appendSharedStandIn(std::size_t baselineIndex);

    /// What the shared stand-ins for BitsPerSample and MaxSampleValue stand for: a bilevel image.
    static constexpr std::uint32_t kSharedSampleCount = 1;
    static std::vector<double> sharedBitsPerSample() { return {1.0}; }

    /// The tags that were read.
    [[nodiscard]] std::span<TiffTag> read() { return std::span(own_).first(readCount_); }
    [[nodiscard]] std::span<const TiffTag> read() const {
        return std::span(own_).first(readCount_);
    }
    /// Calls `visitor` with each stand-in, in order.
    template <class Visitor>
    void visitStandIns(const Visitor& visitor) const;

private:
    /// By their index in `kBaselineTags`.
    [[nodiscard]] static const std::vector<TiffTag>& sharedStandIns();

    std::vector<TiffTag> own_;
    std::uint32_t readCount_ = 0;  // of `own_`; the rest are stand-ins
    std::bitset<kBaselineTags.size()> shared_;
};

template <class Visitor>
void KnownTags::visitStandIns(const Visitor& visitor) const {
    const std::vector<TiffTag>& shared = sharedStandIns();
    std::size_t own = readCount_;
    for (std::size_t i = 0; i < shared_.size(); ++i) {
        if (shared_[i]) {
            visitor(shared[i]);
        } else if (own < own_.size() && own_[own].tagId() == kBaselineTags[i]) {
            visitor(own_[own++]);
        }
    }
}

}  // namespace veltrace::module
