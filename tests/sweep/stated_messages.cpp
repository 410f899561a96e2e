#include "sweep/stated_messages.h"

#include <algorithm>
#include <array>
#include <bit>
#include <functional>
#include <regex>
#include <utility>
#include <vector>

namespace veltrace::test {

namespace {

enum class Channels { warning, error, either };

struct Row {
    std::string identifier;
    Channels channels;
    std::regex text;
};

// Marks in the shapes below: %d a number, %p a position with its sign, %q a file name in quotes.
std::regex shape(std::string text) {
    const std::pair<const char*, const char*> marks[] = {
        {"%d", "(0|[1-9][0-9]*)"}, {"%p", "(0|-?[1-9][0-9]*)"}, {"%q", "\"/proc/self/fd/[0-9]+\""}};
    for (const auto& [mark, meaning] : marks) {
        for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark)) {
            text.replace(at, 2, meaning);
        }
    }
    return std::regex(text, std::regex::ECMAScript | std::regex::optimize);
}

Row row(const std::string& identifier, Channels channels, const std::string& text) {
    return {"ZEPHRA:veltrace:" + identifier, channels, shape(text)};
}

// What no file alone can cause is not here: refused arrays, seeks that fail although their position
// is inside the file, files that vanish, internal faults.
std::vector<Row> allRows() {
    using enum Channels;
    const std::string version =
        R"(Could not read TIFF header version number, the image may be corrupt\.)";
    const std::string first =
        R"(Could not read the location of the first TIFF tag table, the image may be corrupt\.)";
    const std::string outside =
        R"(The indicated starting byte of the first image file directory \(%p\) exceeds the image )"
        R"(file size \(%d\), the image may be corrupt\.)";
    const std::string jpegEnd = R"(the image file %q may be corrupt\.)";
    const std::string byZero =
        R"(The computation of the tag value for "\w*" involves division by zero\.  The value has )"
        R"(been set to NaN\.)";
    const std::string nested = R"( subIFD\.  There may have been some loss of metadata\.\n)";
    const std::string size = "the JPEG section size, " + jpegEnd;
    return {
        row("unhandledFileFormat", error, "File format not recognized"),
        // headers
        row("tiffHeaderEndianReadFailure", error,
            R"(Could not read TIFF header byte order the image file %q may be corrupt\.)"),
        row("badEndianness", error,
            R"(The endian signature \[%d %d\] of %q  is neither \[77 77\] \(big-endian\) nor )"
            R"(\[73 73\] \(little-endian\),the image file may be corrupt\.)"),
        row("badTiffHeaderVersionRead", error, version),
        row("badTiffHeaderOffsetRead", error, first),
        row("badTiffIfdOffset", error, outside),
        row("bigTiff:badOffsetSizeRead", error,
            R"((Could not read offset size in the TIFF header|Could not read Big TIFF header )"
            R"(padding), the image may be corrupt\.)"),
        row("bigTiff:badTiffHeaderOffsetRead", error, first),
        row("bigTiff:badTiffIfdOffset", error, outside),
        row("bigTiff:badTiffHeaderIfdOffset", error,
            R"(Could not seek to position specified by TIFF header offset pointer,  the image may )"
            R"(be corrupt\.\n)"),
        // segments
        row("jpegMarkerReadFailure", error, "Could not read one of the JPEG markers, " + jpegEnd),
        row("invalidJpegMarker", error,
            "Encountered (25[0-4]|2[0-4][0-9]|1?[0-9]?[0-9]) instead of the expected value of 255 "
            "for a JPEG marker, " +
                jpegEnd),
        row("highOrderByteSectionSizeReadFailure", error,
            "Could not read the high order byte of " + size),
        row("lowOrderByteSectionSizeReadFailure", error,
            "Could not read the low order byte of " + size),
        row("badJpegExifHeaderRead", error, "Unable to read the JPEG Exif header, " + jpegEnd),
        row("badJpegExifHeaderValue", warning,
            R"(The JPEG Exif header reads as "[^]{0,6}" instead of "Exif  ", )" + jpegEnd),
        // directories; those of the main chain fail with errors
        row("numIfdEntriesReadError", either,
            "Unable to read the number of entries in one of the image file directories, the "
            R"(metadata in %q may be corrupt\.)"),
        row("zeroLengthIfdTable", either,
            R"(The image file directory at byte position %d has zero entries and is being )"
            R"(ignored\.)"),
        row("jpegApp1MaximumLengthExceeded", either,
            R"(The (|GPS |interoperability |Exif ) image file directory at byte position %d claims )"
            R"(to have %d entries, which will exceed the maximum allowed size \(64KB\) of the APP1 )"
            R"(segment specified by the JPEG standard\.  This IFD is being ignored\.)"),
        row("badRawIfdBufferMemoryAllocation", either,
            R"(Could not allocate %d bytes required for the IFD table\.)"),
        row("badRawIfdRead", either,
            "Could not read IFD table #0 into memory, some of the metadata in the image file may "
            "be "
            R"(corrupt\.\n)"),
        row("badRawIfdRead", warning,
            "Could not read the (GPSInfo|Interoperability|Exif) sub IFD table into memory, some of "
            R"(the metadata in the image file may be corrupt\.\n)"),
        row("badNextIfdPointer", warning,
            "The pointer to a secondary IFD exceeds the size of the image file %q and therefore "
            R"(cannot be valid\.  Some metadata might not be returned\. )"),
        row("badNextIfdPointer", warning,
            "Could not seek to the next image file directory, some metadata in the image file %q "
            R"(might not have been retrieved\.)"),
        row("TagFile:nextIfdOffsetReadError", warning,
            "Unable to read the offset value at byte position %d to a following image file "
            R"(directory, the metadata in %q may be corrupt\.)"),
        // entries
        row("TiffTag:noTypeFormatId", warning,
            R"(Tag ID %d has datatype format "TIFF_NOTYPE" and cannot be processed\.\n)"),
        row("badTagFormat", warning,
            R"(Tag ID %d with datatype format value (1[4-9]|[2-9][0-9]|[1-9][0-9]{2,4}) is )"
            R"(invalid\.  Only values 0-13 are allowed\.\n)"),
        row("TagFile:failedMemoryAllocation", warning,
            "Unable to allocate [1-9][0-9]* to hold tag data for tag ID %d\n"),
        row("badTiffTagOffsetDataRead", warning,
            R"lit(Unable to read (TIFF tag "\w+" value|value for TIFF tag #%d) from byte location )lit"
            R"lit(%d\.)lit"),
        row("TiffTag:unrecognizedIfd", warning,
            R"(Tag %d has an unrecognized TIFF_IFD data format\.\n)"),
        row("TiffTag:illegallyNestedIfdWithinGpsIfd", warning,
            "Tag id # (330|34665|34853|40965) is illegal within the GPS" + nested),
        row("TiffTag:illegallyNestedIfdWithinIopIfd", warning,
            "Tag id # (330|34665|34853|40965) is illegal within the Interoperability" + nested),
        row("rational:badTagValueDivisionByZero", warning, byZero),
        row("signedRational:badTagValueDivisionByZero", warning, byZero),
        row("unknownTagPayloadState", warning,
            R"(Tag data for unknown tag ID %dis in an unrecognized state\.\n)"),
    };
}

bool matches(const zephra::Message& message, Channel channel) {
    static const std::vector<Row> rows = allRows();
    const Channels only = channel == Channel::warning ? Channels::warning : Channels::error;
    return std::ranges::any_of(rows, [&](const Row& row) {
        return row.identifier == message.identifier &&
               (row.channels == only || row.channels == Channels::either) &&
               std::regex_match(message.text, row.text);
    });
}

}  // namespace

bool isStated(const zephra::Message& message, Channel channel) {
    // Sweeps bring the same messages again and again, and regular expressions are slow. A table of
    // hashes does not grow, whatever comes.
    static std::array<std::size_t, 1 << 14> seen{};
    const std::hash<std::string> hash;
    const std::size_t key = hash(message.text) ^ std::rotl(hash(message.identifier), 1) ^
                            (channel == Channel::error ? 1U : 0U);
    std::size_t& place = seen[key % seen.size()];
    if (place == key) {
        return true;
    }
    if (!matches(message, channel)) {
        return false;
    }
    place = key;
    return true;
}

}  // namespace veltrace::test
