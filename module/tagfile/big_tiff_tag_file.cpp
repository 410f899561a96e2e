#include "tagfile/big_tiff_tag_file.h"

#include "entry/errors.h"

namespace veltrace::module {

BigTiffTagFile::BigTiffTagFile(const char* fileName) : TiffTagFile(fileName) {
    setLayout(20, 8, 8);
    setFormatType(FormatType::bigTiff);
}

std::size_t BigTiffTagFile::readNumEntries(std::uint64_t* count) {
    return readNumber(count) ? 1 : 0;
}

void BigTiffTagFile::readHeader() {
    beginHeader();
    readVersion("ZEPHRA:veltrace:bigTiff:badTiffHeaderVersionRead");
    std::uint16_t offsetSize = 0;
    if (!readNumber(&offsetSize)) {
        throw VeltraceFatalError{"ZEPHRA:veltrace:bigTiff:badOffsetSizeRead",
                                 "Could not read offset size in the TIFF header, "
                                 "the image may be corrupt."};
    }
    std::uint16_t padding = 0;
    if (!readNumber(&padding)) {
        // Kept: the same identifier as for the offset size.
        throw VeltraceFatalError{"ZEPHRA:veltrace:bigTiff:badOffsetSizeRead",
                                 "Could not read Big TIFF header padding, "
                                 "the image may be corrupt."};
    }
    std::uint64_t offset = 0;
    if (!readNumber(&offset)) {
        throw VeltraceFatalError{"ZEPHRA:veltrace:bigTiff:badTiffHeaderOffsetRead",
                                 "Could not read the location of the first TIFF tag table, "
                                 "the image may be corrupt."};
    }
    seekToFirstIfd(offset, "ZEPHRA:veltrace:bigTiff:badTiffIfdOffset",
                   "ZEPHRA:veltrace:bigTiff:badTiffHeaderIfdOffset");
}

std::size_t BigTiffTagFile::readOffset(std::uint64_t* offset) {
    return readNumber(offset) ? 1 : 0;
}

std::uint64_t BigTiffTagFile::bigEntryCountField(const std::byte* entry) const {
    return entryField<std::uint64_t>(entry + 4);
}

std::uint64_t BigTiffTagFile::bigEntryOffsetField(const std::byte* entry) const {
    return entryField<std::uint64_t>(entry + 12);
}

}  // namespace veltrace::module
