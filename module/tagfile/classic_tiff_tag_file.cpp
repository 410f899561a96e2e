#include "tagfile/classic_tiff_tag_file.h"

#include "tagfile/classic_fields.h"

namespace veltrace::module {

ClassicTiffTagFile::ClassicTiffTagFile(const char* fileName) : TiffTagFile(fileName) {
    setFormatType(FormatType::classicTiff);
}

std::size_t ClassicTiffTagFile::readNumEntries(std::uint64_t* count) {
    return readClassicCount(*this, count);
}

std::size_t ClassicTiffTagFile::readOffset(std::uint64_t* offset) {
    return readClassicOffset(*this, offset);
}

}  // namespace veltrace::module
