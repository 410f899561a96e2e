// One image file directory.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "zephra/qv.h"

#include "ifd/ifd_id.h"
#include "tag/baseline_tags.h"
#include "tag/tiff_tag.h"

namespace veltrace::module {

class TagFile;

/// One directory of a chain: its tags, and what the output needs of its image. Owns the tags;
/// points at the reader, which outlives it. Copies are deep.
class IFD {
public:
    /// An empty directory without a reader, for containers.
    IFD() = default;

    /// An empty directory, ready for `readIfd`.
    IFD(TagFile& reader, IfdId ifdId) : reader_(&reader), ifdId_(ifdId) {}

    /// Reads the directory at the reader's position; the position afterwards is unspecified. An
    /// entry that fails is skipped with a host warning. A count or table that fails throws
    /// `VeltraceRecoverableError`, or `VeltraceFatalError` for the count of an image directory.
    void readIfd();

    /// Records that the directory has this tag, and what the output needs of it.
    void noteTag(const TiffTag& tag);

    /// Number of known tags, plus one if there are unknown tags, modulo 65536.
    [[nodiscard]] std::uint16_t getNumFields() const;

    /// Writes the message for a table that exceeds an APP1 segment. Throws
    /// `VeltraceRecoverableError` for an impossible IFD ID.
    void constructErrMsgForApp1Exceeded(std::ostream& stream) const;

    [[nodiscard]] IfdId ifdId() const { return ifdId_; }
    /// Absolute position of the directory's count field.
    [[nodiscard]] std::int64_t position() const { return position_; }
    /// Bytes of the entry table.
    [[nodiscard]] std::uint32_t tableSize() const { return tableSize_; }
    /// In pixels; 0 if the tag is missing.
    [[nodiscard]] double width() const { return width_; }
    [[nodiscard]] double height() const { return height_; }
    /// Always 0.
    [[nodiscard]] double spare() const { return spare_; }
    /// In entry order, then the fallback tags.
    [[nodiscard]] const std::vector<TiffTag>& knownTags() const { return knownTags_; }
    /// In entry order.
    [[nodiscard]] const std::vector<TiffTag>& unknownTags() const { return unknownTags_; }
    /// Whether the directory itself has this tag; false for tags that have no fallback.
    [[nodiscard]] bool has(std::uint16_t baselineTag) const;
    /// -1 if the tag is missing.
    [[nodiscard]] std::int32_t photometricCode() const { return photometricCode_; }
    /// Bits of each sample, fallback value included.
    [[nodiscard]] const std::vector<double>& bitsPerSample() const { return bitsPerSample_; }
    [[nodiscard]] std::uint32_t sampleCount() const { return sampleCount_; }

    // Output into one element of the chain's structure array. A failure that has a message is
    // raised as a host error.

    void outputColorType(qvArray* structure, std::size_t element) const;
    void outputBitDepth(qvArray* structure, std::size_t element) const;
    /// One field for each known tag, and "UnknownTags". Scales Colormaps in place.
    void outputTags(qvArray* structure, std::size_t element);

private:
    friend struct IfdPeer;  // tests check the members

    void readNumIfdEntries();
    void requireAcceptableTable() const;
    void readRawIfd(std::byte* table) const;
    [[nodiscard]] std::string tableDescription() const;
    void createTags(const std::byte* table);
    void makeRoom(const std::byte* table);
    void createTag(const std::byte* entry);
    [[nodiscard]] bool hasDefaultTags() const;
    void addDefaultTags();
    void addDefaultTag(std::uint16_t tagId);
    void outputUnknownTags(qvArray* structure, std::size_t element) const;

    std::vector<TiffTag> knownTags_;
    std::vector<TiffTag> unknownTags_;
    std::uint32_t entryCount_ = 0;
    TagFile* reader_ = nullptr;
    std::int64_t position_ = 0;
    IfdId ifdId_ = IfdId::image;
    std::uint32_t tableSize_ = 0;
    double width_ = 0;
    double height_ = 0;
    double spare_ = 0;
    std::array<bool, kFallbackCount> present_{};  // by the index in `kFallbackTags`
    std::int32_t photometricCode_ = -1;
    std::vector<double> bitsPerSample_;
    std::uint32_t sampleCount_ = 1;
};

}  // namespace veltrace::module
