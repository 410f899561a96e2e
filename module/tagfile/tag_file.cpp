// Opens, copies and closes a reader's file.
#include "tagfile/tag_file.h"

#include <array>
#include <bit>
#include <utility>

#include "entry/errors.h"
#include "entry/message.h"
#include "ifd/ifd_set.h"

namespace veltrace::module {

namespace {

constexpr const char* kGeneralFieldNames[] = {
    "Filename", "FileModDate", "FileSize", "Format",    "FormatVersion",
    "Width",    "Height",      "BitDepth", "ColorType", "FormatSignature",
};

}  // namespace

TagFile::TagFile(const char* fileName) : fileName_(fileName) {
    if (stat64(fileName, &status_) != 0) {
        throw VeltraceFatalError{
            "ZEPHRA:veltrace:statFailure",
            message("The image file ", inQuotes(fileName_), " may not exist.\n")};
    }
    determineComputerByteOrder();
    openFile("ZEPHRA:veltrace:TagFile:fileOpenFailure");
    for (const char* name : kGeneralFieldNames) {
        appendDefaultFieldName(name);
    }
}

TagFile::TagFile() {
    throw VeltraceFatalError{"ZEPHRA:veltrace:TagFile:defaultConstructorNotAllowed",
                             "The default TagFile constructor should not be used.\n"};
}

TagFile::TagFile(const TagFile& other) {
    copyDescription(other);
    openFile("ZEPHRA:veltrace:TagFileCopyConstructer:fileOpenFailure");
}

// Kept: no check for self-assignment; the file is closed and opened again.
TagFile& TagFile::operator=(const TagFile& other) {  // NOLINT(cert-oop54-cpp)
    if (!file_.close()) {
        throw VeltraceFatalError{"ZEPHRA:veltrace:TagFile:operator_equals",
                                 message("Could not properly close ", inQuotes(fileName_), '\n')};
    }
    copyDescription(other);
    openFile("ZEPHRA:veltrace:TagFileAssignmentOperator:fileOpenFailure");
    return *this;
}

TagFile::~TagFile() noexcept(false) {  // NOLINT(bugprone-exception-escape)
    ifdSet_.reset();
    if (!file_.close()) {
        throw VeltraceFatalError{"ZEPHRA:veltrace:TagFile:fileCloseFailure",
                                 message("Could not properly close ", inQuotes(fileName_), '\n')};
    }
}

std::uint32_t TagFile::getNumIfds() const {
    return ifdSet_ ? ifdSet_->getNumIfds() : 0;
}

qvArray* TagFile::outputValue() {
    if (!ifdSet_) {
        return qvCreateNumericArray(0, nullptr, qvClassDouble, qvReal);
    }
    return ifdSet_->outputValue();
}

std::int64_t TagFile::absolutePosition(std::uint64_t offset) const {
    std::int64_t sum = 0;
    static_cast<void>(__builtin_add_overflow(offsetBase_, offset, &sum));  // wraps by design
    return sum;
}

std::int64_t TagFile::position() const {
    return file_.position();
}

bool TagFile::seek(std::int64_t position) {
    return file_.seek(position);
}

bool TagFile::skip(std::int64_t distance) {
    return file_.skip(distance);
}

std::size_t TagFile::read(void* items, std::size_t size, std::size_t count) {
    return file_.read(items, size, count);
}

void TagFile::setLayout(std::int32_t entrySize, std::int32_t countSize, std::int32_t offsetSize) {
    entrySize_ = entrySize;
    countSize_ = countSize;
    offsetSize_ = offsetSize;
}

void TagFile::setIfdSet(std::unique_ptr<IFDSet> ifdSet) {
    ifdSet_ = std::move(ifdSet);
}

void TagFile::determineComputerByteOrder() {
    const auto bytes = std::bit_cast<std::array<unsigned char, 2>>(std::uint16_t{1});
    computerIsLittleEndian_ = bytes[0] == 1;
    computerIsBigEndian_ = !computerIsLittleEndian_;
}

void TagFile::openFile(const char* failureIdentifier) {
    if (!file_.open(fileName_.c_str(), fileSize())) {
        throw VeltraceFatalError{failureIdentifier,
                                 message("Could not open ", inQuotes(fileName_), '\n')};
    }
}

void TagFile::copyDescription(const TagFile& other) {
    fileName_ = other.fileName_;
    offsetBase_ = other.offsetBase_;
    headerByteOrder_ = other.headerByteOrder_;
    computerIsBigEndian_ = other.computerIsBigEndian_;
    computerIsLittleEndian_ = other.computerIsLittleEndian_;
    status_ = other.status_;
}

}  // namespace veltrace::module
