// A TIFF structure and a reader at its first directory.
#pragma once

#include <gtest/gtest.h>

#include "ifd/ifd.h"
#include "support/memory_file.h"
#include "support/tiff_builder.h"
#include "tagfile/classic_tiff_tag_file.h"

namespace veltrace::test {

using namespace module;

/// The header may be anywhere in the file. Works for any reader: the one for JPEG files can read a
/// TIFF structure without its container too.
template <class Reader = ClassicTiffTagFile>
class OpenedTiff {
public:
    explicit OpenedTiff(const Bytes& bytes, std::int64_t header = 0)
        : file_(bytes), reader_(file_.name().c_str()) {
        EXPECT_TRUE(reader_.seek(header));
        reader_.readHeader();
    }
    explicit OpenedTiff(const TiffBuilder& builder) : OpenedTiff(builder.bytes()) {}

    Reader& operator*() { return reader_; }
    [[nodiscard]] const std::string& name() const { return file_.name(); }

    /// The directory at the reader's position.
    IFD readDirectory(IfdId ifdId = IfdId::image) {
        IFD directory(reader_, ifdId);
        directory.readIfd();
        return directory;
    }

private:
    MemoryFile file_;
    Reader reader_;
};

}  // namespace veltrace::test
