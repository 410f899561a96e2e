#include "faults/fault_messages.h"

#include <algorithm>
#include <regex>
#include <string>
#include <vector>

namespace veltrace::test {

namespace {

struct Row {
    std::string identifier;
    Channel channel;
    std::regex text;
};

Row row(const std::string& identifier, Channel channel, const std::string& text) {
    return {"ZEPHRA:veltrace:" + identifier, channel, std::regex(text)};
}

std::vector<Row> allRows() {
    using enum Channel;
    const std::string file = R"("/proc/self/fd/[0-9]+")";
    const std::string version =
        R"(Could not read TIFF header version number, the image may be corrupt\.)";
    const std::string empty =
        R"(The image file directory at byte position -1 has zero entries and is being ignored\.)";
    const std::string tooLong =
        R"(The (|GPS |interoperability |Exif ) image file directory at byte position -1 claims to )"
        R"(have [0-9]+ entries, which will exceed the maximum allowed size \(64KB\) of the APP1 )"
        R"(segment specified by the JPEG standard\.  This IFD is being ignored\.)";
    const std::string none = "Could not allocate enough memory for ";
    const std::string unknown =
        " array for the unknown tag with ID [0-9]+"
        R"(\.\n)";
    return {
        row("badInputArgumentCount", error, R"(VELTRACE requires exactly one input\.\n)"),
        row("badImageFileArgument", error,
            R"(The image file argument cannot have type (double|cell|struct), it must be type )"
            R"(char\.\n)"),
        row("badFilename", error, R"(Could not open file "[^"]*"\.)"),
        row("unknownException", error, R"(Caught an unknown exception in veltrace\.)"),
        // what the file has and the system does not give
        row("badTiffHeaderVersionRead", error, version),
        row("bigTiff:badTiffHeaderVersionRead", error, version),
        row("badTiffHeaderIfdOffset", error,
            R"(Could not seek to position specified by TIFF header offset pointer,  the image may )"
            R"(be corrupt\.\n)"),
        row("JpegTagFile:fileSignatureReadFailure", error,
            "Unable to read the first two bytes of the file. " + file +
                R"( is probably corrupt\.\n)"),
        row("badJpegSectionSeek", error,
            "Could not read past one of the JPEG data sections, the image file " + file +
                R"( may be corrupt\.)"),
        row("IFDSet:badNextIfdPointer", warning,
            "Could not seek to the next image file directory pointer, the image file " + file +
                R"( is probably corrupt\.)"),
        row("TiffTag:badTagDataOffsetSeek", warning,
            R"(Could not seek to data for tag with ID [0-9]+, the image may be corrupt\.)"),
        row("TiffTag:badSubIfdSeek", warning,
            R"(Could not seek to start of (generic|Exif|GPS|IOP) sub IFD\n)"),
        // a position that the system does not report is -1
        row("TagFile:nextIfdOffsetReadError", warning,
            "Unable to read the offset value at byte position -1 to a following image file "
            "directory, the metadata in " +
                file + R"( may be corrupt\.)"),
        row("zeroLengthIfdTable", error, empty),
        row("zeroLengthIfdTable", warning, empty),
        row("jpegApp1MaximumLengthExceeded", error, tooLong),
        row("jpegApp1MaximumLengthExceeded", warning, tooLong),
        // arrays
        row("IFDSet:infoStructAllocationFailure", error, none + R"(the output structure\.)"),
        row("IFDSet:unknownTags:infoStructAllocationFailure", error,
            none + R"(the list of unknown tags\.)"),
        row("TiffTag:numericAllocationFailure", error,
            none + R"(the output array for tag[A-Z]\w+\.\n)"),
        row("TiffTag:unknownTag:numericAllocationFailure", error,
            none + "the output numeric" + unknown),
        row("TiffTag:unknownTag:charAllocationFailure", error, none + "the output char" + unknown),
        row("tifftag:colormapAllocationFailure", error,
            R"(Could not allocate memory for Colormap tag value\.)"),
        row("processSampleFormat", error,
            R"(Could not allocate memory for SampleFormat tag value\.)"),
    };
}

}  // namespace

bool isStatedOfFaults(const zephra::Message& message, Channel channel) {
    static const std::vector<Row> rows = allRows();
    return std::ranges::any_of(rows, [&](const Row& row) {
        return row.identifier == message.identifier && row.channel == channel &&
               std::regex_match(message.text, row.text);
    });
}

const zephra::Message& fatalErrorUnconverted() {
    static const zephra::Message message{
        "ZEPHRA:host:foreignException",
        "The module threw an exception of type veltrace::module::VeltraceFatalError"};
    return message;
}

const zephra::Message& badAllocUnconverted() {
    static const zephra::Message message{
        "ZEPHRA:host:foreignException",
        "The module threw an exception of type std::bad_alloc: std::bad_alloc"};
    return message;
}

bool isOfTheHost(const zephra::Message& message) {
    static const zephra::Message outOfMemory{"ZEPHRA:host:outOfMemory", "Out of memory."};
    return message == outOfMemory || message == fatalErrorUnconverted() ||
           message == badAllocUnconverted();
}

}  // namespace veltrace::test
