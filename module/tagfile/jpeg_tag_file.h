// The reader of JPEG files with an Exif segment.
#pragma once

#include "tagfile/tag_file.h"

namespace veltrace::module {

/// Finds the first APP1 segment of a JPEG file and reads the first directory of the TIFF block in
/// it (Exif 2.2, section 4.5). Uses the classic layout.
class JpegTagFile : public TagFile {
public:
    explicit JpegTagFile(const char* fileName);

    /// Walks the marker segments, then reads the directory, whose exceptions pass through. A
    /// failure of the walk throws `VeltraceFatalError`. SOS or DQT before an APP1 segment ends the
    /// walk without a directory and without a message.
    void readAll() override;
    std::size_t readNumEntries(std::uint64_t* count) override;
    std::size_t readOffset(std::uint64_t* offset) override;

private:
    void checkSignature();
    /// Reads prefix and code of a marker and returns the code.
    unsigned char readMarker();
    /// The stated length of a segment: its two length bytes and the payload.
    std::uint16_t readSegmentLength();
    void skipPayload(std::uint16_t segmentLength);
    /// Reads the Exif identifier, the TIFF header and the directory. A wrong identifier is only a
    /// warning.
    void readExifHeader();
    [[nodiscard]] std::string mayBeCorrupt() const;
};

}  // namespace veltrace::module
