#include "support/messages.h"

namespace veltrace::test {

namespace {

using std::to_string;

zephra::Message corrupt(const std::string& identifier, const std::string& text,
                        const std::string& fileName) {
    return message("ZEPHRA:veltrace:" + identifier,
                   text + "the image file \"" + fileName + "\" may be corrupt.");
}

}  // namespace

zephra::Message unknownException() {
    return message("ZEPHRA:veltrace:unknownException", "Caught an unknown exception in veltrace.");
}

zephra::Message unopenableFile(const std::string& fileName) {
    return message("ZEPHRA:veltrace:badFilename", "Could not open file \"" + fileName + "\".");
}

zephra::Message unknownDate() {
    return message("ZEPHRA:veltrace:IFDSet:strftimeFailure",
                   "Failed to create file modification time string.");
}

zephra::Message unreadableByteOrder(const std::string& fileName) {
    return corrupt("tiffHeaderEndianReadFailure", "Could not read TIFF header byte order ",
                   fileName);
}

zephra::Message badByteOrder(int first, int second, const std::string& fileName) {
    return message("ZEPHRA:veltrace:badEndianness",
                   "The endian signature [" + to_string(first) + " " + to_string(second) +
                       "] of \"" + fileName +
                       "\"  is neither [77 77] (big-endian) nor [73 73] (little-endian),the image "
                       "file may be corrupt.");
}

zephra::Message unreadableFirstOffset() {
    return message(
        "ZEPHRA:veltrace:badTiffHeaderOffsetRead",
        "Could not read the location of the first TIFF tag table, the image may be corrupt.");
}

zephra::Message firstOffsetPastTheEnd(std::int64_t position, std::int64_t fileSize) {
    return message("ZEPHRA:veltrace:badTiffIfdOffset",
                   "The indicated starting byte of the first image file directory (" +
                       to_string(position) + ") exceeds the image file size (" +
                       to_string(fileSize) + "), the image may be corrupt.");
}

zephra::Message unreadableMarker(const std::string& fileName) {
    return corrupt("jpegMarkerReadFailure", "Could not read one of the JPEG markers, ", fileName);
}

zephra::Message badMarker(int prefix, const std::string& fileName) {
    return corrupt("invalidJpegMarker",
                   "Encountered " + to_string(prefix) +
                       " instead of the expected value of 255 for a JPEG marker, ",
                   fileName);
}

zephra::Message badExifIdentifier(const std::string& shown, const std::string& fileName) {
    return corrupt("badJpegExifHeaderValue",
                   "The JPEG Exif header reads as \"" + shown + "\" instead of \"Exif  \", ",
                   fileName);
}

zephra::Message unreadableCount(const std::string& fileName) {
    return message("ZEPHRA:veltrace:numIfdEntriesReadError",
                   "Unable to read the number of entries in one of the image file directories, the "
                   "metadata in \"" +
                       fileName + "\" may be corrupt.");
}

zephra::Message zeroEntries(std::uint64_t position) {
    return message("ZEPHRA:veltrace:zeroLengthIfdTable",
                   "The image file directory at byte position " + to_string(position) +
                       " has zero entries and is being ignored.");
}

zephra::Message unreadableTable(const std::string& table) {
    return message("ZEPHRA:veltrace:badRawIfdRead",
                   "Could not read " + table +
                       " into memory, some of the metadata in the image file may be corrupt.\n");
}

zephra::Message nextPointerPastTheEnd(const std::string& fileName) {
    return message("ZEPHRA:veltrace:badNextIfdPointer",
                   "The pointer to a secondary IFD exceeds the size of the image file \"" +
                       fileName +
                       "\" and therefore cannot be valid.  Some metadata might not be returned. ");
}

zephra::Message noType(std::uint16_t tag) {
    return message("ZEPHRA:veltrace:TiffTag:noTypeFormatId",
                   "Tag ID " + to_string(tag) +
                       " has datatype format \"TIFF_NOTYPE\" and cannot be processed.\n");
}

zephra::Message badType(std::uint16_t tag, std::uint16_t type) {
    return message("ZEPHRA:veltrace:badTagFormat",
                   "Tag ID " + to_string(tag) + " with datatype format value " + to_string(type) +
                       " is invalid.  Only values 0-13 are allowed.\n");
}

zephra::Message ifdType(std::uint16_t tag) {
    return message("ZEPHRA:veltrace:TiffTag:unrecognizedIfd",
                   "Tag " + to_string(tag) + " has an unrecognized TIFF_IFD data format.\n");
}

zephra::Message unreadableValue(const std::string& name, std::uint64_t position) {
    return message("ZEPHRA:veltrace:badTiffTagOffsetDataRead", "Unable to read TIFF tag \"" + name +
                                                                   "\" value from byte location " +
                                                                   to_string(position) + ".");
}

zephra::Message unreadableValue(std::uint16_t unknownTag, std::uint64_t position) {
    return message("ZEPHRA:veltrace:badTiffTagOffsetDataRead",
                   "Unable to read value for TIFF tag #" + to_string(unknownTag) +
                       " from byte location " + to_string(position) + ".");
}

zephra::Message noPayload(std::uint16_t unknownTag) {
    return message(
        "ZEPHRA:veltrace:unknownTagPayloadState",
        "Tag data for unknown tag ID " + to_string(unknownTag) + "is in an unrecognized state.\n");
}

zephra::Message noStructure() {
    return message("ZEPHRA:veltrace:IFDSet:infoStructAllocationFailure",
                   "Could not allocate enough memory for the output structure.");
}

zephra::Message noNumbersFor(const std::string& name) {
    return message("ZEPHRA:veltrace:TiffTag:numericAllocationFailure",
                   "Could not allocate enough memory for the output array for tag" + name + ".\n");
}

zephra::Message noColormap() {
    return message("ZEPHRA:veltrace:tifftag:colormapAllocationFailure",
                   "Could not allocate memory for Colormap tag value.");
}

zephra::Message noSampleFormats() {
    return message("ZEPHRA:veltrace:processSampleFormat",
                   "Could not allocate memory for SampleFormat tag value.");
}

zephra::Message noUnknownTags() {
    return message("ZEPHRA:veltrace:IFDSet:unknownTags:infoStructAllocationFailure",
                   "Could not allocate enough memory for the list of unknown tags.");
}

zephra::Message noUnknownTag(const std::string& kind, std::uint16_t tag) {
    return message("ZEPHRA:veltrace:TiffTag:unknownTag:" + kind + "AllocationFailure",
                   "Could not allocate enough memory for the output " + kind +
                       " array for the unknown tag with ID " + to_string(tag) + ".\n");
}

}  // namespace veltrace::test
