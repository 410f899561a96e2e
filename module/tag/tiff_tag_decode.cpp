// From the raw entry to the tag's values.
#include <algorithm>
#include <limits>

#include "entry/errors.h"
#include "entry/host_messages.h"
#include "entry/message.h"
#include "tag/data_type.h"
#include "tag/tag_id.h"
#include "tag/tiff_tag.h"
#include "tagfile/swap_bytes.h"
#include "tagfile/tag_file.h"

namespace veltrace::module {

namespace {

struct Pointer {
    std::uint16_t tagId;
    IfdId opens;
    const char* seekMessage;
};

constexpr Pointer kPointers[] = {
    {tag_id::kSubIfds, IfdId::image, "Could not seek to start of generic sub IFD\n"},
    {tag_id::kExifIfd, IfdId::exif, "Could not seek to start of Exif sub IFD\n"},
    {tag_id::kGpsIfd, IfdId::gps, "Could not seek to start of GPS sub IFD\n"},
    {tag_id::kInteroperabilityIfd, IfdId::interoperability,
     "Could not seek to start of IOP sub IFD\n"},
};

/// Null when the tag does not point to a sub-directory.
const Pointer* pointerFor(std::uint16_t tagId) {
    const auto* pointer = std::ranges::find(kPointers, tagId, &Pointer::tagId);
    return pointer != std::end(kPointers) ? pointer : nullptr;
}

std::uint16_t tagIdOf(const TagFile& reader, const std::byte* entry) {
    return reader.entryField<std::uint16_t>(entry);
}

std::uint16_t typeOf(const TagFile& reader, const std::byte* entry) {
    return reader.entryField<std::uint16_t>(entry + 2);
}

bool isValid(std::uint16_t type) {
    return DataType{type} != DataType::noType && type < kElementSizes.size();
}

VeltraceRecoverableError faultOf(std::uint16_t tagId, std::uint16_t type) {
    if (DataType{type} == DataType::noType) {
        return VeltraceRecoverableError{
            "ZEPHRA:veltrace:TiffTag:noTypeFormatId",
            message("Tag ID ", tagId,
                    " has datatype format \"TIFF_NOTYPE\" and cannot be processed.\n")};
    }
    return VeltraceRecoverableError{"ZEPHRA:veltrace:badTagFormat",
                                    message("Tag ID ", tagId, " with datatype format value ", type,
                                            " is invalid.  Only values 0-13 are allowed.\n")};
}

std::string illegalNesting(std::uint16_t tagId, const char* directory) {
    return message("Tag id # ", tagId, " is illegal within the ", directory,
                   " subIFD.  There may have been some loss of metadata.\n");
}

}  // namespace

TiffTag::TiffTag(TagFile& reader, const std::byte* entry, IfdId ifdId) : ifdId_(ifdId) {
    decodeHeader(reader, entry);
    const HostBuffer value = allocateValue();
    readValue(reader, entry, value.get());
    finishDecoding(reader, value.get());
}

void TiffTag::decodeHeader(const TagFile& reader, const std::byte* entry) {
    tagId_ = tagIdOf(reader, entry);
    getTagName();
    const std::uint16_t type = typeOf(reader, entry);
    if (!isValid(type)) {
        throw VeltraceRecoverableError(faultOf(tagId_, type));
    }
    value_ = TagValue(type, reader.entryCountField(entry));
}

std::optional<VeltraceRecoverableError> TiffTag::faultOfType(const TagFile& reader,
                                                             const std::byte* entry) {
    const std::uint16_t type = typeOf(reader, entry);
    return isValid(type) ? std::nullopt : std::optional(faultOf(tagIdOf(reader, entry), type));
}

// Kept: the request passes 32 bits of the size. A value that does not fit in them is refused
// whatever the host answers; a pointer tag has no value, so its size decides nothing.
HostBuffer TiffTag::allocateValue() const {
    const std::uint64_t size = value_.byteSize();
    HostBuffer value = allocateHostBuffer(static_cast<std::uint32_t>(size));
    const bool refused = value == nullptr && size != 0;
    const bool tooLarge = size > std::numeric_limits<std::uint32_t>::max();
    if (refused || (tooLarge && pointerFor(tagId_) == nullptr)) {
        throw VeltraceRecoverableError{
            "ZEPHRA:veltrace:TagFile:failedMemoryAllocation",
            message("Unable to allocate ", size, " to hold tag data for tag ID ", tagId_, '\n')};
    }
    return value;
}

void TiffTag::readValue(TagFile& reader, const std::byte* entry, std::byte* value) {
    if (pointerFor(tagId_) != nullptr) {
        valueOffset_ = reader.entryOffsetField(entry);
        return;
    }
    const bool pairs = isRational(DataType{dataType()});
    const std::uint32_t width = pairs ? 4 : kElementSizes[dataType()];
    const std::uint64_t elements = pairs ? 2 * count() : count();
    if (byteSize() > static_cast<std::uint32_t>(reader.offsetSize())) {
        valueOffset_ = reader.entryOffsetField(entry);
        readValueAtOffset(reader, value, width, static_cast<std::uint32_t>(elements));
    } else {
        std::copy_n(entry + reader.valueFieldStart(), byteSize(), value);
    }
    swapBytes(value, static_cast<int>(width), static_cast<unsigned>(elements), reader.swapFlag());
}

void TiffTag::readValueAtOffset(TagFile& reader, std::byte* value, std::uint32_t width,
                                std::uint32_t elements) {
    const std::int64_t position = reader.offsetBase() + std::int64_t{valueOffset_};
    if (!reader.seek(position)) {
        throw VeltraceRecoverableError{"ZEPHRA:veltrace:TiffTag:badTagDataOffsetSeek",
                                       message("Could not seek to data for tag with ID ", tagId_,
                                               ", the image may be corrupt.")};
    }
    if (reader.read(value, width, elements) < elements) {
        const std::string what =
            name().empty() ? message("Unable to read value for TIFF tag #", tagId_)
                           : message("Unable to read TIFF tag ", inQuotes(name()), " value");
        throw VeltraceRecoverableError{"ZEPHRA:veltrace:badTiffTagOffsetDataRead",
                                       message(what, " from byte location ", position, '.')};
    }
}

void TiffTag::finishDecoding(TagFile& reader, const std::byte* value) {
    if (pointerFor(tagId_) != nullptr) {
        readSubDirectory(reader);
        return;
    }
    decodeValues(value);
    processSpecificTags();
}

void TiffTag::decodeValues(const std::byte* value) {
    switch (DataType{dataType()}) {
        case DataType::noType:
            throw VeltraceRecoverableError{
                "ZEPHRA:veltrace:TiffTag:unrecognizedTagFormatId",
                "Encountered tag with datatype format TIFF_NOTYPE.  Skipping... \n"};
        case DataType::byte:
        case DataType::ascii:
        case DataType::unsignedShort:
        case DataType::unsignedLong:
        case DataType::signedByte:
        case DataType::undefined:
        case DataType::signedShort:
        case DataType::signedLong:
        case DataType::singleFloat:
        case DataType::doubleFloat:
            value_.set(value);
            return;
        case DataType::rational:
            value_.set(value);
            warnOfDivisionByZero("ZEPHRA:veltrace:rational:badTagValueDivisionByZero");
            return;
        case DataType::signedRational:
            value_.set(value);
            warnOfDivisionByZero("ZEPHRA:veltrace:signedRational:badTagValueDivisionByZero");
            return;
        case DataType::ifd:
            throw VeltraceRecoverableError{
                "ZEPHRA:veltrace:TiffTag:unrecognizedIfd",
                message("Tag ", tagId_, " has an unrecognized TIFF_IFD data format.\n")};
    }
    throw VeltraceRecoverableError{"ZEPHRA:veltrace:TiffTag:unrecognizedTagFormatId",
                                   message("Did not recognize tag format ", dataType(), '\n')};
}

void TiffTag::warnOfDivisionByZero(const char* warningIdentifier) const {
    if (!value_.dividesByZero()) {
        return;
    }
    issueHostWarning(warningIdentifier,
                     message("The computation of the tag value for ", inQuotes(name()),
                             " involves division by zero.  The value has been set to NaN."));
}

void TiffTag::readSubDirectory(TagFile& reader) {
    const Pointer& pointer = *pointerFor(tagId_);
    const std::int64_t returnTo = reader.position();
    if (!reader.seek(reader.offsetBase() + std::int64_t{valueOffset_})) {
        throw VeltraceRecoverableError{"ZEPHRA:veltrace:TiffTag:badSubIfdSeek",
                                       pointer.seekMessage};
    }
    checkNesting();
    subDirectory_ = SubDirectory::read(reader, pointer.opens);
    // Every later read seeks for itself, so a refusal here would cost nothing.
    static_cast<void>(reader.seek(returnTo));
}

void TiffTag::checkNesting() const {
    switch (ifdId_) {
        case IfdId::image:
        case IfdId::exif:
            return;
        case IfdId::gps:
            throw VeltraceRecoverableError{"ZEPHRA:veltrace:TiffTag:illegallyNestedIfdWithinGpsIfd",
                                           illegalNesting(tagId_, "GPS")};
        case IfdId::interoperability:
            throw VeltraceRecoverableError{"ZEPHRA:veltrace:TiffTag:illegallyNestedIfdWithinIopIfd",
                                           illegalNesting(tagId_, "Interoperability")};
    }
    // Kept: "ID" in capitals, two texts run together, and no directory named in the second.
    throw VeltraceRecoverableError{
        "ZEPHRA:veltrace:TiffTag:unrecognizedIfdID",
        message("Did not recognize IFD ID ", number(ifdId_), '\n', illegalNesting(tagId_, ""))};
}

}  // namespace veltrace::module
