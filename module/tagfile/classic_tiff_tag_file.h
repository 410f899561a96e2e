// The reader of classic TIFF files.
#pragma once

#include "tagfile/tiff_tag_file.h"

namespace veltrace::module {

/// TIFF 6.0: entries of 12 bytes, 2-byte counts, 4-byte offsets.
class ClassicTiffTagFile : public TiffTagFile {
public:
    explicit ClassicTiffTagFile(const char* fileName);

    std::size_t readNumEntries(std::uint64_t* count) override;
    std::size_t readOffset(std::uint64_t* offset) override;
};

}  // namespace veltrace::module
