#include "ifd/ifd.h"

#include <algorithm>
#include <ostream>
#include <sstream>
#include <utility>

#include "entry/errors.h"
#include "entry/host_messages.h"
#include "entry/message.h"
#include "tag/host_buffer.h"
#include "tag/integer_code.h"
#include "tag/tag_id.h"
#include "tagfile/tag_file.h"

namespace veltrace::module {

namespace {

// An APP1 segment stores its length in 16 bits (Exif 2.2, section 4.5.4).
constexpr std::uint32_t kMaxApp1Bytes = 65536;

constexpr std::uint32_t kUsualEntries = 32;

}  // namespace

void IFD::readIfd() {
    position_ = reader_->position();
    readNumIfdEntries();
    tableSize_ = static_cast<std::uint32_t>(std::uint64_t{entryCount_} *
                                            static_cast<std::uint64_t>(reader_->entrySize()));
    requireAcceptableTable();
    const HostBuffer table = allocateHostBuffer(tableSize_);
    if (table == nullptr) {
        throw VeltraceRecoverableError{
            "ZEPHRA:veltrace:badRawIfdBufferMemoryAllocation",
            message("Could not allocate ", tableSize_, " bytes required for the IFD table.")};
    }
    readRawIfd(table.get());
    createTags(table.get());
}

// Narrows a 64-bit count to its low 32 bits.
void IFD::readNumIfdEntries() {
    std::uint64_t count = 0;
    if (reader_->readNumEntries(&count) == 0) {
        const std::string identifier = "ZEPHRA:veltrace:numIfdEntriesReadError";
        const std::string text = message(
            "Unable to read the number of entries in one of the image file directories, "
            "the metadata in ",
            inQuotes(reader_->fileName()), " may be corrupt.");
        if (ifdId_ == IfdId::image && getNumFields() == 0) {
            throw VeltraceFatalError{identifier, text};
        }
        throw VeltraceRecoverableError{identifier, text};
    }
    entryCount_ = static_cast<std::uint32_t>(count);
}

void IFD::requireAcceptableTable() const {
    if (tableSize_ == 0) {
        throw VeltraceRecoverableError{
            "ZEPHRA:veltrace:zeroLengthIfdTable",
            message("The image file directory at byte position ", position_,
                    " has zero entries and is being ignored.")};
    }
    if (tableSize_ > kMaxApp1Bytes && reader_->formatType() == FormatType::jpeg) {
        std::ostringstream text;
        constructErrMsgForApp1Exceeded(text);
        throw VeltraceRecoverableError{"ZEPHRA:veltrace:jpegApp1MaximumLengthExceeded", text.str()};
    }
}

// A table whose size wrapped cannot be read whole, so it counts as truncated.
void IFD::readRawIfd(std::byte* table) const {
    const bool wrapped =
        tableSize_ / static_cast<std::uint32_t>(reader_->entrySize()) != entryCount_;
    if (wrapped || reader_->read(table, 1, tableSize_) < tableSize_) {
        throw VeltraceRecoverableError{
            "ZEPHRA:veltrace:badRawIfdRead",
            message("Could not read ", tableDescription(),
                    " into memory, some of the metadata in the image file may be corrupt.\n")};
    }
}

std::string IFD::tableDescription() const {
    switch (ifdId_) {
        case IfdId::image:
            // No tag has been read yet, so the number is always 0.
            return message("IFD table #", getNumFields());
        case IfdId::gps:
            return "the GPSInfo sub IFD table";
        case IfdId::interoperability:
            return "the Interoperability sub IFD table";
        case IfdId::exif:
            return "the Exif sub IFD table";
    }
    return "";
}

void IFD::createTags(const std::byte* table) {
    makeRoom(table);
    for (std::uint64_t i = 0; i < entryCount_; ++i) {
        try {
            createTag(table + i * static_cast<std::uint64_t>(reader_->entrySize()));
        } catch (const VeltraceRecoverableError& error) {
            issueHostWarning(error.identifier.c_str(), error.message);
        }
    }
    if (hasDefaultTags()) {
        addDefaultTags();
    }
}

// A file may have thousands of directories, so a usual one gets room for its tags once, and for no
// more than it may have.
void IFD::makeRoom(const std::byte* table) {
    const std::size_t entries = std::min(entryCount_, kUsualEntries);
    std::size_t missing = hasDefaultTags() ? kFallbackCount : 0;
    for (std::size_t i = 0; i < entries && missing != 0; ++i) {
        const auto* entry = table + i * static_cast<std::size_t>(reader_->entrySize());
        const auto tagId = reader_->entryField<std::uint16_t>(entry);
        missing -= fallbackIndex(tagId) != kFallbackCount ? 1 : 0;
    }
    knownTags_.reserve(entries + missing);
}

bool IFD::hasDefaultTags() const {
    return ifdId_ == IfdId::image && reader_->formatType() != FormatType::jpeg;
}

void IFD::createTag(const std::byte* entry) {
    TiffTag tag(*reader_, entry, ifdId_);
    noteTag(tag);
    if (tag.tagId() == tag_id::kWidth) {
        width_ = tag.firstValue().value_or(width_);
    } else if (tag.tagId() == tag_id::kHeight) {
        height_ = tag.firstValue().value_or(height_);
    } else if (tag.name().empty()) {
        unknownTags_.push_back(std::move(tag));
    } else {
        knownTags_.push_back(std::move(tag));
    }
}

void IFD::noteTag(const TiffTag& tag) {
    if (const std::size_t index = fallbackIndex(tag.tagId()); index < present_.size()) {
        present_[index] = true;
    }
    switch (tag.tagId()) {
        case tag_id::kBitsPerSample:
            bitsPerSample_ = tag.outputValues();
            return;
        case tag_id::kPhotometricInterpretation:
            if (const auto code = tag.firstValue()) {
                photometricCode_ = integerCode(*code);
            }
            return;
        case tag_id::kSamplesPerPixel:
            // Kept: the number of values, not the value.
            sampleCount_ = static_cast<std::uint32_t>(tag.outputValues().size());
            return;
        default:
            return;
    }
}

void IFD::addDefaultTags() {
    for (std::size_t i = 0; i < present_.size(); ++i) {
        if (!present_[i]) {
            addDefaultTag(kFallbackTags[i].id);
        }
    }
}

void IFD::addDefaultTag(std::uint16_t tagId) {
    switch (tagId) {
        case tag_id::kBitsPerSample:
            knownTags_.emplace_back(tagId, ifdId_, sampleCount_);
            bitsPerSample_.insert(bitsPerSample_.end(), sampleCount_, 1.0);
            return;
        case tag_id::kMaxSampleValue:
            knownTags_.emplace_back(tagId, ifdId_, bitsPerSample_);
            return;
        default:
            knownTags_.emplace_back(tagId, ifdId_);
            return;
    }
}

bool IFD::has(std::uint16_t baselineTag) const {
    const std::size_t index = fallbackIndex(baselineTag);
    return index < present_.size() && present_[index];
}

std::uint16_t IFD::getNumFields() const {
    const std::size_t unknownField = unknownTags_.empty() ? 0 : 1;
    return static_cast<std::uint16_t>(knownTags_.size() + unknownField);
}

void IFD::constructErrMsgForApp1Exceeded(std::ostream& stream) const {
    const auto kindWord = [this] {
        switch (ifdId_) {
            case IfdId::image:
                return "";
            case IfdId::gps:
                return "GPS ";
            case IfdId::interoperability:
                return "interoperability ";
            case IfdId::exif:
                return "Exif ";
        }
        throw VeltraceRecoverableError{
            "ZEPHRA:veltrace:IFD::constructErrMsgForApp1Exceeded:unhandledIfdType",
            "Unhandled IFD type encountered during check for maximal APP1 segment length."};
    };
    // Kept: both the space of the kind word and the one after it.
    stream << message("The ", kindWord(), " image file directory at byte position ", position_,
                      " claims to have ", entryCount_,
                      " entries, which will exceed the maximum allowed size"
                      " (64KB) of the APP1 segment specified by the JPEG standard."
                      "  This IFD is being ignored.");
}

}  // namespace veltrace::module
