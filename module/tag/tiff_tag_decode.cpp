// Decodes a raw entry.
#include <algorithm>
#include <cstring>
#include <limits>

#include "zephra/qv.h"

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

std::string illegalNesting(std::uint16_t tagId, const char* directory) {
    return message("Tag id # ", tagId, " is illegal within the ", directory,
                   " subIFD.  There may have been some loss of metadata.\n");
}

template <class Element>
Element elementAt(const std::byte* bytes, std::uint64_t index) {
    Element element;
    std::memcpy(&element, bytes + index * sizeof element, sizeof element);
    return element;
}

}  // namespace

TiffTag::TiffTag(TagFile& reader, const std::byte* entry, IfdId ifdId) : ifdId_(ifdId) {
    decodeHeader(reader, entry);
    const HostBuffer value = allocateValue();
    readValue(reader, entry, value.get());
    finishDecoding(reader, value.get());
}

void TiffTag::decodeHeader(const TagFile& reader, const std::byte* entry) {
    tagId_ = reader.entryField<std::uint16_t>(entry);
    getTagName();
    dataType_ = reader.entryField<std::uint16_t>(entry + 2);
    requireValidType();
    count_ = reader.entryCountField(entry);
    byteSize_ = count_ * kElementSizes[dataType_];
}

void TiffTag::requireValidType() const {
    if (DataType{dataType_} == DataType::noType) {
        throw VeltraceRecoverableError{
            "ZEPHRA:veltrace:TiffTag:noTypeFormatId",
            message("Tag ID ", tagId_,
                    " has datatype format \"TIFF_NOTYPE\" and cannot be processed.\n")};
    }
    if (dataType_ >= kElementSizes.size()) {
        throw VeltraceRecoverableError{
            "ZEPHRA:veltrace:badTagFormat",
            message("Tag ID ", tagId_, " with datatype format value ", dataType_,
                    " is invalid.  Only values 0-13 are allowed.\n")};
    }
}

// Kept: the request passes the low 32 bits of the size. A larger value is rejected even if the host
// allocates the block; a pointer tag has no value, so its size is ignored.
HostBuffer TiffTag::allocateValue() const {
    HostBuffer value = allocateHostBuffer(static_cast<std::uint32_t>(byteSize_));
    const bool failed = value == nullptr && byteSize_ != 0;
    const bool tooLarge = byteSize_ > std::numeric_limits<std::uint32_t>::max();
    if (failed || (tooLarge && pointerFor(tagId_) == nullptr)) {
        throw VeltraceRecoverableError{"ZEPHRA:veltrace:TagFile:failedMemoryAllocation",
                                       message("Unable to allocate ", byteSize_,
                                               " to hold tag data for tag ID ", tagId_, '\n')};
    }
    return value;
}

void TiffTag::readValue(TagFile& reader, const std::byte* entry, std::byte* value) {
    const bool pairs = isRational(DataType{dataType_});
    const std::uint32_t width = pairs ? 4 : kElementSizes[dataType_];
    const auto elements = static_cast<std::uint32_t>(pairs ? 2 * count_ : count_);
    byteSize_ = static_cast<std::uint32_t>(std::uint64_t{elements} * width);  // wraps by design
    if (pointerFor(tagId_) != nullptr) {
        valueOffset_ = reader.entryOffsetField(entry);
        return;
    }
    if (byteSize_ > static_cast<std::uint32_t>(reader.offsetSize())) {
        valueOffset_ = reader.entryOffsetField(entry);
        readValueAtOffset(reader, value, width, elements);
    } else {
        std::copy_n(entry + reader.valueFieldStart(), byteSize_, value);
    }
    swapBytes(value, static_cast<int>(width), elements, reader.swapFlag());
}

void TiffTag::readValueAtOffset(TagFile& reader, std::byte* value, std::uint32_t width,
                                std::uint32_t elements) {
    const std::int64_t position = reader.absolutePosition(valueOffset_);
    if (!reader.seek(position)) {
        throw VeltraceRecoverableError{"ZEPHRA:veltrace:TiffTag:badTagDataOffsetSeek",
                                       message("Could not seek to data for tag with ID ", tagId_,
                                               ", the image may be corrupt.")};
    }
    if (reader.read(value, width, elements) < elements) {
        const std::string what =
            name_.empty() ? message("Unable to read value for TIFF tag #", tagId_)
                          : message("Unable to read TIFF tag ", inQuotes(name_), " value");
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
    switch (DataType{dataType_}) {
        case DataType::noType:
            throw VeltraceRecoverableError{
                "ZEPHRA:veltrace:TiffTag:unrecognizedTagFormatId",
                "Encountered tag with datatype format TIFF_NOTYPE.  Skipping... \n"};
        case DataType::byte:
        case DataType::undefined:
            return decodeNumbers<std::uint8_t>(value);
        case DataType::ascii:
            rawText_.assign(reinterpret_cast<const char*>(value), count_);
            return;
        case DataType::unsignedShort:
            return decodeNumbers<std::uint16_t>(value);
        case DataType::unsignedLong:
            return decodeNumbers<std::uint32_t>(value);
        case DataType::rational:
            return convertRationals<std::uint32_t>(
                value, "ZEPHRA:veltrace:rational:badTagValueDivisionByZero");
        case DataType::signedByte:
            return decodeNumbers<std::int8_t>(value);
        case DataType::signedShort:
            return decodeNumbers<std::int16_t>(value);
        case DataType::signedLong:
            return decodeNumbers<std::int32_t>(value);
        case DataType::signedRational:
            return convertRationals<std::int32_t>(
                value, "ZEPHRA:veltrace:signedRational:badTagValueDivisionByZero");
        case DataType::singleFloat:
            return decodeNumbers<float>(value);
        case DataType::doubleFloat:
            return decodeNumbers<double>(value);
        case DataType::ifd:
            throw VeltraceRecoverableError{
                "ZEPHRA:veltrace:TiffTag:unrecognizedIfd",
                message("Tag ", tagId_, " has an unrecognized TIFF_IFD data format.\n")};
    }
    throw VeltraceRecoverableError{"ZEPHRA:veltrace:TiffTag:unrecognizedTagFormatId",
                                   message("Did not recognize tag format ", dataType_, '\n')};
}

template <class Element>
void TiffTag::decodeNumbers(const std::byte* value) {
    rawValues_.resize(count_);
    for (std::size_t i = 0; i < rawValues_.size(); ++i) {
        rawValues_[i] = static_cast<double>(elementAt<Element>(value, i));
    }
    outputValues_ = rawValues_;
}

template <class Word>
void TiffTag::convertRationals(const std::byte* value, const char* warningIdentifier) {
    rawValues_.resize(2 * count_);
    for (std::size_t i = 0; i < rawValues_.size(); ++i) {
        rawValues_[i] = static_cast<double>(elementAt<Word>(value, i));
    }
    outputValues_.resize(count_);
    bool dividesByZero = false;
    for (std::size_t i = 0; i < outputValues_.size(); ++i) {
        const double denominator = rawValues_[2 * i + 1];
        if (denominator == 0) {
            outputValues_[i] = qvGetNaN();
            dividesByZero = true;
        } else {
            outputValues_[i] = rawValues_[2 * i] / denominator;
        }
    }
    if (dividesByZero) {
        issueHostWarning(warningIdentifier,
                         message("The computation of the tag value for ", inQuotes(name_),
                                 " involves division by zero.  The value has been set to NaN."));
    }
}

void TiffTag::readSubDirectory(TagFile& reader) {
    const Pointer& pointer = *pointerFor(tagId_);
    const std::int64_t returnTo = reader.position();
    if (!reader.seek(reader.absolutePosition(valueOffset_))) {
        throw VeltraceRecoverableError{"ZEPHRA:veltrace:TiffTag:badSubIfdSeek",
                                       pointer.seekMessage};
    }
    checkNesting();
    subDirectory_ = SubDirectory::read(reader, pointer.opens);
    // Every later read seeks for itself, so a failure here is harmless.
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
