// One decoded directory entry.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "zephra/qv.h"

#include "entry/errors.h"
#include "ifd/ifd_id.h"
#include "tag/host_buffer.h"
#include "tag/owned.h"
#include "tag/sub_directory.h"
#include "tag/tag_value.h"

namespace veltrace::module {

class TagFile;

/// A tag of a directory: its entry's fields, its value as decoded and as reported, its name. A
/// pointer tag owns the chain that it points to. Complete once constructed; copies are deep.
class TiffTag {
public:
    /// Decodes the raw entry at `entry` (`reader.entrySize()` bytes). Reads the value, or the
    /// sub-directory of a pointer tag, through `reader` and leaves its position anywhere. Throws
    /// `VeltraceRecoverableError` for damage to this entry; what a sub-directory throws passes.
    TiffTag(TagFile& reader, const std::byte* entry, IfdId ifdId);

    /// What is wrong with the type of an entry, if anything: such an entry makes no tag.
    [[nodiscard]] static std::optional<VeltraceRecoverableError> faultOfType(
        const TagFile& reader, const std::byte* entry);

    // Stand-ins for baseline tags that a directory lacks. Each throws `VeltraceRecoverableError`
    // for a tag id that it has no value for.

    /// A baseline tag with its fallback value, if it has one.
    TiffTag(std::uint16_t tagId, IfdId ifdId);
    /// BitsPerSample (258): one bit for each of `sampleCount` samples.
    TiffTag(std::uint16_t tagId, IfdId ifdId, std::uint32_t sampleCount);
    /// MaxSampleValue (281): the largest value of each bit depth in `bitsPerSample`.
    TiffTag(std::uint16_t tagId, IfdId ifdId, const std::vector<double>& bitsPerSample);

    [[nodiscard]] std::uint16_t tagId() const { return tagId_; }
    [[nodiscard]] std::uint16_t dataType() const { return value_.type(); }
    /// Number of elements as the entry states it.
    [[nodiscard]] std::uint64_t count() const { return value_.count(); }
    /// The offset field of the entry, relative to the TIFF header; 0 for a value inside the entry.
    [[nodiscard]] std::uint64_t valueOffset() const { return valueOffset_; }
    [[nodiscard]] std::uint32_t valueOffsetLowWord() const { return valueOffset_; }
    /// Bytes of the value, modulo 2^32.
    [[nodiscard]] std::uint64_t byteSize() const {
        return static_cast<std::uint32_t>(value_.byteSize());
    }
    [[nodiscard]] IfdId ifdId() const { return ifdId_; }
    /// Empty for an unknown tag. Static, with a NUL after its last character.
    [[nodiscard]] std::string_view name() const { return name_; }
    /// Numbers as decoded; numerators and denominators of rationals in file order.
    [[nodiscard]] std::vector<double> rawValues() const;
    /// Numbers as reported, and how many there are.
    [[nodiscard]] std::vector<double> outputValues() const;
    [[nodiscard]] std::size_t outputCount() const;
    /// The first number as reported; none for texts and empty values.
    [[nodiscard]] std::optional<double> firstValue() const;
    /// The bytes of an ASCII value, NULs included.
    [[nodiscard]] std::string_view rawText() const;
    /// A word or text that is reported in place of the numbers; empty when there is none.
    [[nodiscard]] std::string outputText() const;
    /// The chain that a pointer tag owns; null for every other tag.
    [[nodiscard]] const IFDSet* subDirectory() const { return subDirectory_.get(); }

    /// A new host value, or null when there is nothing to report. Scales a Colormap in place.
    [[nodiscard]] qvArray* outputValue();

    /// The same of a tag that is no Colormap with values, which stays as it is.
    [[nodiscard]] qvArray* constantOutput() const;

    /// Always 0.
    [[nodiscard]] static constexpr std::uint32_t reserved() { return 0; }

    /// Fills the fields "ID", "Offset" and "Value" of element `index` of the structure array.
    void outputUnknown(qvArray* unknownTags, std::size_t index) const;

private:
    friend struct TiffTagPeer;  // tests call operations that no file can reach

    // Decoding
    void decodeHeader(const TagFile& reader, const std::byte* entry);
    [[nodiscard]] HostBuffer allocateValue() const;
    void finishDecoding(TagFile& reader, const std::byte* value);
    void readValue(TagFile& reader, const std::byte* entry, std::byte* value);
    void readValueAtOffset(TagFile& reader, std::byte* value, std::uint32_t width,
                           std::uint32_t elements);
    void decodeValues(const std::byte* value);
    void warnOfDivisionByZero(const char* warningIdentifier) const;
    void readSubDirectory(TagFile& reader);
    void checkNesting() const;

    // Vocabulary and interpretation
    void getTagName();
    void processSpecificTags();
    [[nodiscard]] bool isInterpreted() const;
    void applySpecificTreatment();
    void applyGrayResponseUnit();
    /// What stands for the first number; empty when nothing does. Static, with a NUL at its end.
    [[nodiscard]] std::string_view word() const;
    [[nodiscard]] bool isXmp() const;
    /// The numbers of an XMP tag as characters.
    [[nodiscard]] std::string xmpText() const;
    void copyOutputValues(double* numbers) const;

    // Output
    [[nodiscard]] qvArray* doubleMatrix(std::size_t rows, std::size_t columns) const;
    [[nodiscard]] qvArray* numericOutput() const;
    [[nodiscard]] qvArray* colormapOutput();
    [[nodiscard]] qvArray* sampleFormatOutput() const;
    [[nodiscard]] qvArray* unknownValue() const;

    std::uint16_t tagId_ = 0;
    IfdId ifdId_ = IfdId::image;
    std::uint32_t valueOffset_ = 0;
    TagValue value_;
    // What is reported in place of what the value says.
    Owned<std::vector<double>> reported_;
    const char* name_ = "";  // static
    SubDirectory subDirectory_;
};

// There may be as many as a file has entries.
static_assert(sizeof(TiffTag) == 56);
// Directories are moved into their chain, never copied, whatever they nest.
static_assert(std::is_nothrow_move_constructible_v<TiffTag>);

}  // namespace veltrace::module
