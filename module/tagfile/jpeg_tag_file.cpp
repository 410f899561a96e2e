#include "tagfile/jpeg_tag_file.h"

#include <string_view>

#include "entry/errors.h"
#include "entry/host_messages.h"
#include "entry/message.h"
#include "ifd/ifd_set.h"
#include "tagfile/classic_fields.h"

namespace veltrace::module {

namespace {

constexpr unsigned char kMarkerPrefix = 255;
constexpr unsigned char kStartOfImage = 216;
constexpr unsigned char kStartOfScan = 218;
constexpr unsigned char kQuantizationTables = 219;
constexpr unsigned char kApp1 = 225;

}  // namespace

JpegTagFile::JpegTagFile(const char* fileName) : TagFile(fileName) {
    setFormatType(FormatType::jpeg);
}

void JpegTagFile::readAll() {
    checkSignature();
    for (;;) {
        const unsigned char code = readMarker();
        // Kept: every marker is assumed to have a length, even those that have none.
        const std::uint16_t segmentLength = readSegmentLength();
        if (code == kStartOfScan || code == kQuantizationTables) {
            return;
        }
        if (code == kApp1) {
            readExifHeader();
            return;
        }
        skipPayload(segmentLength);
    }
}

std::size_t JpegTagFile::readNumEntries(std::uint64_t* count) {
    return readClassicCount(*this, count);
}

std::size_t JpegTagFile::readOffset(std::uint64_t* offset) {
    return readClassicOffset(*this, offset);
}

void JpegTagFile::checkSignature() {
    unsigned char bytes[2] = {};
    if (read(bytes, 1, sizeof bytes) < sizeof bytes) {
        throw VeltraceFatalError{"ZEPHRA:veltrace:JpegTagFile:fileSignatureReadFailure",
                                 message("Unable to read the first two bytes of the file. ",
                                         inQuotes(fileName()), " is probably corrupt.\n")};
    }
    // Kept: one correct byte is enough.
    if (bytes[0] != kMarkerPrefix && bytes[1] != kStartOfImage) {
        throw VeltraceFatalError{
            "ZEPHRA:veltrace:JpegTagFile:fileSignatureVerificationFailure",
            message("The first two bytes of a JPEG file should be [255 216], "
                    "and the first two bytes of this file are [",
                    static_cast<char>(bytes[0]), ", ", static_cast<char>(bytes[1]), "].\n")};
    }
}

unsigned char JpegTagFile::readMarker() {
    unsigned char marker[2] = {};
    if (read(marker, 1, sizeof marker) < sizeof marker) {
        throw VeltraceFatalError{
            "ZEPHRA:veltrace:jpegMarkerReadFailure",
            message("Could not read one of the JPEG markers, ", mayBeCorrupt())};
    }
    if (marker[0] != kMarkerPrefix) {
        throw VeltraceFatalError{
            "ZEPHRA:veltrace:invalidJpegMarker",
            message("Encountered ", unsigned{marker[0]},
                    " instead of the expected value of 255 for a JPEG marker, ", mayBeCorrupt())};
    }
    return marker[1];
}

std::uint16_t JpegTagFile::readSegmentLength() {
    unsigned char high = 0;
    if (read(&high, 1, 1) != 1) {
        throw VeltraceFatalError{
            "ZEPHRA:veltrace:highOrderByteSectionSizeReadFailure",
            message("Could not read the high order byte of the JPEG section size, ",
                    mayBeCorrupt())};
    }
    unsigned char low = 0;
    if (read(&low, 1, 1) != 1) {
        throw VeltraceFatalError{
            "ZEPHRA:veltrace:lowOrderByteSectionSizeReadFailure",
            message("Could not read the low order byte of the JPEG section size, ",
                    mayBeCorrupt())};
    }
    return static_cast<std::uint16_t>(high * 256 + low);
}

// Kept: a stated length of 0 or 1 moves backwards, into the length itself.
void JpegTagFile::skipPayload(std::uint16_t segmentLength) {
    if (!skip(std::int64_t{segmentLength} - 2)) {
        throw VeltraceFatalError{
            "ZEPHRA:veltrace:badJpegSectionSeek",
            message("Could not read past one of the JPEG data sections, ", mayBeCorrupt())};
    }
}

void JpegTagFile::readExifHeader() {
    char identifier[6] = {};
    if (read(identifier, 1, sizeof identifier) < sizeof identifier) {
        throw VeltraceFatalError{"ZEPHRA:veltrace:badJpegExifHeaderRead",
                                 message("Unable to read the JPEG Exif header, ", mayBeCorrupt())};
    }
    const std::string_view read(identifier, sizeof identifier);
    if (!read.starts_with("Exif")) {
        const std::string_view shown = read.substr(0, read.find('\0'));
        issueHostWarning("ZEPHRA:veltrace:badJpegExifHeaderValue",
                         message("The JPEG Exif header reads as ", inQuotes(shown), " instead of ",
                                 inQuotes("Exif  "), ", ", mayBeCorrupt()));
    }
    readHeader();
    setIfdSet(std::make_unique<IFDSet>(*this, IfdId::image));
}

std::string JpegTagFile::mayBeCorrupt() const {
    return message("the image file ", inQuotes(fileName()), " may be corrupt.");
}

}  // namespace veltrace::module
