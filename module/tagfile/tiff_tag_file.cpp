#include "tagfile/tiff_tag_file.h"

#include <memory>

#include "ifd/ifd_set.h"
#include "tag/baseline_tags.h"

namespace veltrace::module {

TiffTagFile::TiffTagFile(const char* fileName) : TagFile(fileName) {
    appendDefaultFieldName("ByteOrder");
    for (const BaselineTag& tag : kBaselineTags) {
        appendDefaultFieldName(tag.name);
    }
}

void TiffTagFile::readAll() {
    readHeader();
    setIfdSet(std::make_unique<IFDSet>(*this, IfdId::image));
}

}  // namespace veltrace::module
