// The reader of BigTIFF files.
#pragma once

#include "tagfile/tiff_tag_file.h"

namespace veltrace::module {

/// BigTIFF: entries of 20 bytes, 8-byte counts and offsets.
class BigTiffTagFile : public TiffTagFile {
public:
    explicit BigTiffTagFile(const char* fileName);

    std::size_t readNumEntries(std::uint64_t* count) override;
    /// The 16-byte BigTIFF header. Offset size and padding are read but not checked.
    void readHeader() override;
    std::size_t readOffset(std::uint64_t* offset) override;

    /// Count (bytes 4 to 11) and value or offset (bytes 12 to 19) of a raw 20-byte entry. Entry
    /// decoding uses the 32-bit fields instead.
    [[nodiscard]] std::uint64_t bigEntryCountField(const std::byte* entry) const;
    [[nodiscard]] std::uint64_t bigEntryOffsetField(const std::byte* entry) const;
};

}  // namespace veltrace::module
