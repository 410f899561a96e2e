// Files whose whole content is a TIFF structure.
#pragma once

#include "tagfile/tag_file.h"

namespace veltrace::module {

/// Base of the classic TIFF and BigTIFF readers.
class TiffTagFile : public TagFile {
public:
    /// As `TagFile`; also adds the names of the baseline tags to the default field names.
    explicit TiffTagFile(const char* fileName);

    /// Reads the header, then the main chain. If either throws, there is no chain.
    void readAll() override;
};

}  // namespace veltrace::module
