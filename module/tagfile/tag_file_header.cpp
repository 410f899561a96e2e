// The TIFF header: byte order, version, first directory.
#include <bit>

#include "entry/errors.h"
#include "entry/message.h"
#include "tagfile/tag_file.h"

namespace veltrace::module {

void TagFile::readHeader() {
    beginHeader();
    readVersion("ZEPHRA:veltrace:badTiffHeaderVersionRead");
    std::uint32_t offset = 0;
    if (!readNumber(&offset)) {
        throw VeltraceFatalError{"ZEPHRA:veltrace:badTiffHeaderOffsetRead",
                                 "Could not read the location of the first TIFF tag table, "
                                 "the image may be corrupt."};
    }
    seekToFirstIfd(offset, "ZEPHRA:veltrace:badTiffIfdOffset",
                   "ZEPHRA:veltrace:badTiffHeaderIfdOffset");
}

void TagFile::beginHeader() {
    offsetBase_ = position();
    readByteOrder();
}

void TagFile::readByteOrder() {
    if (read(byteOrderMark_.data(), byteOrderMark_.size(), 1) != 1) {
        throw VeltraceFatalError{"ZEPHRA:veltrace:tiffHeaderEndianReadFailure",
                                 message("Could not read TIFF header byte order the image file ",
                                         inQuotes(fileName_), " may be corrupt.")};
    }
    // Either mark repeats one letter, so it reads the same in any byte order.
    headerByteOrder_ = HeaderByteOrder{std::bit_cast<std::uint16_t>(byteOrderMark_)};
    if (headerByteOrder_ != HeaderByteOrder::big && headerByteOrder_ != HeaderByteOrder::little) {
        throw VeltraceFatalError{
            "ZEPHRA:veltrace:badEndianness",
            message("The endian signature [", unsigned{byteOrderMark_[0]}, ' ',
                    unsigned{byteOrderMark_[1]}, "] of ", inQuotes(fileName_),
                    "  is neither [77 77] (big-endian) nor [73 73] (little-endian),"
                    "the image file may be corrupt.")};
    }
    swapFlag_ = (computerIsBigEndian_ && headerByteOrder_ == HeaderByteOrder::little) ||
                (computerIsLittleEndian_ && headerByteOrder_ == HeaderByteOrder::big);
}

// The version is stored but never compared: the sniffers have already chosen the format.
void TagFile::readVersion(const char* identifier) {
    if (!readNumber(&version_)) {
        throw VeltraceFatalError{identifier,
                                 "Could not read TIFF header version number, the image may "
                                 "be corrupt."};
    }
}

void TagFile::seekToFirstIfd(std::uint64_t offset, const char* offsetIdentifier,
                             const char* seekIdentifier) {
    const std::int64_t target = absolutePosition(offset);
    if (target > fileSize()) {
        throw VeltraceFatalError{
            offsetIdentifier,
            message("The indicated starting byte of the first image file directory (", target,
                    ") exceeds the image file size (", fileSize(), "), the image may be corrupt.")};
    }
    // Kept: the position is narrowed to 32 bits, so from 2 GiB up the seek fails or goes to the
    // wrapped position.
    if (!seek(static_cast<std::int32_t>(target))) {
        throw VeltraceFatalError{seekIdentifier,
                                 "Could not seek to position specified by TIFF header offset "
                                 "pointer,  the image may be corrupt.\n"};
    }
}

}  // namespace veltrace::module
