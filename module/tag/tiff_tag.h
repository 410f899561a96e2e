// One decoded directory entry.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "zephra/qv.h"

#include "ifd/ifd_id.h"
#include "tag/host_buffer.h"
#include "tag/sub_directory.h"

namespace veltrace::module {

class TagFile;

/// A tag of a directory: its entry's fields, its value as decoded and as reported, its name. A
/// pointer tag owns the chain that it points to. Complete once constructed; copies are deep.
class TiffTag {
public:
    /// Decodes the raw entry at `entry` (`reader.entrySize()` bytes). Reads the value, or the
    /// sub-directory of a pointer tag, through `reader`, whose position is then unspecified. Throws
    /// `VeltraceRecoverableError` if the entry is damaged; exceptions of a sub-directory pass
    /// through.
    TiffTag(TagFile& reader, const std::byte* entry, IfdId ifdId);

    // Fallback tags, for baseline tags that a directory lacks. Each throws
    // `VeltraceRecoverableError` for any other tag id.

    /// A baseline tag with its fallback value, if it has one.
    TiffTag(std::uint16_t tagId, IfdId ifdId);
    /// BitsPerSample (258): one bit for each of `sampleCount` samples.
    TiffTag(std::uint16_t tagId, IfdId ifdId, std::uint32_t sampleCount);
    /// MaxSampleValue (281): the largest value of each bit depth in `bitsPerSample`.
    TiffTag(std::uint16_t tagId, IfdId ifdId, const std::vector<double>& bitsPerSample);

    [[nodiscard]] std::uint16_t tagId() const { return tagId_; }
    [[nodiscard]] std::uint16_t dataType() const { return dataType_; }
    /// Number of elements, as stated in the entry.
    [[nodiscard]] std::uint64_t count() const { return count_; }
    /// The offset field of the entry, relative to the TIFF header; 0 for a value inside the entry.
    [[nodiscard]] std::uint64_t valueOffset() const { return valueOffset_; }
    [[nodiscard]] std::uint32_t valueOffsetLowWord() const {
        return static_cast<std::uint32_t>(valueOffset_);
    }
    /// Bytes of the value, modulo 2^32.
    [[nodiscard]] std::uint64_t byteSize() const { return byteSize_; }
    [[nodiscard]] IfdId ifdId() const { return ifdId_; }
    /// Empty for an unknown tag.
    [[nodiscard]] const std::string& name() const { return name_; }
    /// Numbers as decoded; numerators and denominators of rationals in file order.
    [[nodiscard]] const std::vector<double>& rawValues() const { return rawValues_; }
    /// Numbers as reported.
    [[nodiscard]] const std::vector<double>& outputValues() const { return outputValues_; }
    /// The first number as reported; none for texts and empty values.
    [[nodiscard]] std::optional<double> firstValue() const;
    /// The bytes of an ASCII value, NULs included.
    [[nodiscard]] const std::string& rawText() const { return rawText_; }
    /// A word or text reported in place of the numbers; empty if there is none.
    [[nodiscard]] const std::string& outputText() const { return outputText_; }
    /// The chain that a pointer tag owns; null for every other tag.
    [[nodiscard]] const IFDSet* subDirectory() const { return subDirectory_.get(); }
    /// Always 0.
    [[nodiscard]] static constexpr std::uint32_t reserved() { return 0; }

    // Output never throws the module's errors: if the host cannot create a value, a host error is
    // raised.

    /// A new host value, or null if there is nothing to report. Scales a Colormap in place, also in
    /// the chain of a pointer tag.
    [[nodiscard]] qvArray* outputValue();

    /// Fills the fields "ID", "Offset" and "Value" of element `index` of the structure array.
    void outputUnknown(qvArray* unknownTags, std::size_t index) const;

private:
    friend struct TiffTagPeer;  // tests call operations that no file can reach

    // Decoding
    void decodeHeader(const TagFile& reader, const std::byte* entry);
    void requireValidType() const;
    [[nodiscard]] HostBuffer allocateValue() const;
    void readValue(TagFile& reader, const std::byte* entry, std::byte* value);
    void readValueAtOffset(TagFile& reader, std::byte* value, std::uint32_t width,
                           std::uint32_t elements);
    void finishDecoding(TagFile& reader, const std::byte* value);
    void decodeValues(const std::byte* value);
    template <class Element>
    void decodeNumbers(const std::byte* value);
    template <class Word>
    void convertRationals(const std::byte* value, const char* warningIdentifier);
    void readSubDirectory(TagFile& reader);
    void checkNesting() const;

    // Vocabulary and interpretation
    void getTagName();
    void processSpecificTags();
    void applySpecificTreatment();
    void applyGrayResponseUnit();
    void applyWord();
    void convertXmp();

    // Output
    [[nodiscard]] qvArray* numericOutput() const;
    [[nodiscard]] qvArray* colormapOutput();
    [[nodiscard]] qvArray* sampleFormatOutput() const;
    [[nodiscard]] qvArray* unknownValue() const;

    std::vector<double> rawValues_;
    std::vector<double> outputValues_;
    std::string rawText_;
    std::string outputText_;
    std::uint16_t tagId_ = 0;
    std::uint16_t dataType_ = 0;
    std::uint64_t count_ = 0;
    std::uint64_t valueOffset_ = 0;
    std::uint64_t byteSize_ = 0;
    IfdId ifdId_ = IfdId::image;
    std::string name_;
    SubDirectory subDirectory_;
};

// Directories are moved into their chain, never copied.
static_assert(std::is_nothrow_move_constructible_v<TiffTag>);

}  // namespace veltrace::module
