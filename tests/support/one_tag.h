// A tag of the module, read from a file.
#pragma once

#include "ifd/ifd_set.h"
#include "support/memory_file.h"
#include "tag/tiff_tag.h"
#include "tagfile/classic_tiff_tag_file.h"

namespace veltrace::test {

using namespace module;

/// The first known tag of the first directory of a file, which must have one. Used inside a call.
template <class Reader = ClassicTiffTagFile>
class OneTag {
public:
    explicit OneTag(const Bytes& bytes) : file_(bytes), reader_(file_.name().c_str()) {
        reader_.readAll();
    }
    [[nodiscard]] const TiffTag& tag() const {
        return reader_.ifdSet()->directories().front().knownTags().front();
    }

private:
    MemoryFile file_;
    Reader reader_;
};

}  // namespace veltrace::test
