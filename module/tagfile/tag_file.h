// The abstract base of the readers: owns the open file and reads its numbers.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <memory>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

#include "zephra/qv.h"

#include "tagfile/input_file.h"
#include "tagfile/stack_room.h"
#include "tagfile/swap_bytes.h"

namespace veltrace::module {

class IFDSet;

/// The kind of file that a reader reads.
enum class FormatType : std::int32_t { jpeg = 0, classicTiff = 1, bigTiff = 2 };

/// The byte-order mark of a TIFF header as a number, the same in either byte order.
enum class HeaderByteOrder : std::uint32_t {
    little = 0x4949,  ///< "II"
    big = 0x4D4D,     ///< "MM"
};

/// Owns the file and, once read, the main chain of directories. All numbers of the file are read
/// through the primitives here and `swapBytes`.
class TagFile {
public:
    /// Gets the status of the file and opens it. Throws `VeltraceFatalError` if either fails.
    explicit TagFile(const char* fileName);

    /// Forbidden: always throws `VeltraceFatalError`.
    TagFile();

    /// Copies what describes the file (name, offset base, byte order, status), not what was read
    /// from it, and opens a stream of its own. Throws `VeltraceFatalError` when that fails.
    TagFile(const TagFile& other);

    /// Closes its own stream, then copies like the copy constructor. Both steps may throw.
    /// Assigning a reader to itself closes and reopens the file.
    TagFile& operator=(const TagFile& other);

    /// Frees the directories and closes the file. Throws `VeltraceFatalError` when closing fails.
    virtual ~TagFile() noexcept(false);  // NOLINT(bugprone-exception-escape)

    /// Reads the header and every directory. Called once.
    virtual void readAll() = 0;

    /// Reads a directory's entry count at the current position and returns the number of items
    /// read, 1 or 0. A 2-byte count is stored in the low 32 bits of `count`; the high half is then
    /// not written.
    virtual std::size_t readNumEntries(std::uint64_t* count) = 0;

    /// Reads the TIFF header at the current position and seeks to the first directory. Throws
    /// `VeltraceFatalError`. This is the header of TIFF 6.0, section 2.
    virtual void readHeader();

    /// Reads a file offset at the current position and returns the number of items read, 1 or 0.
    virtual std::size_t readOffset(std::uint64_t* offset) = 0;

    [[nodiscard]] FormatType formatType() const { return formatType_; }
    [[nodiscard]] std::FILE* stream() const { return file_.stream(); }
    [[nodiscard]] std::string fileName() const { return fileName_; }
    [[nodiscard]] bool swapFlag() const { return swapFlag_; }
    /// Absolute position of the TIFF header; offsets in the file are relative to it.
    [[nodiscard]] std::int64_t offsetBase() const { return offsetBase_; }
    [[nodiscard]] HeaderByteOrder headerByteOrder() const { return headerByteOrder_; }
    [[nodiscard]] bool computerIsBigEndian() const { return computerIsBigEndian_; }
    [[nodiscard]] std::int64_t fileSize() const { return status_.st_size; }
    /// Seconds since 1970-01-01 00:00:00 UTC.
    [[nodiscard]] std::time_t modificationTime() const { return status_.st_mtime; }
    /// Bytes of a directory entry, of a directory's entry count, and of an offset.
    [[nodiscard]] std::int32_t entrySize() const { return entrySize_; }
    [[nodiscard]] std::int32_t countSize() const { return countSize_; }
    [[nodiscard]] std::int32_t offsetSize() const { return offsetSize_; }
    /// Bytes of an entry before its value field.
    [[nodiscard]] std::int32_t valueFieldStart() const { return entrySize_ - offsetSize_; }
    /// The first two bytes of the TIFF header, as stored in the file.
    [[nodiscard]] const std::array<unsigned char, 2>& byteOrderMark() const {
        return byteOrderMark_;
    }
    [[nodiscard]] std::uint16_t version() const { return version_; }
    /// Field names that come first in the output of every image directory.
    [[nodiscard]] const std::vector<std::string>& defaultFieldNames() const {
        return defaultFieldNames_;
    }
    /// The stack that is left for sub-directories.
    [[nodiscard]] StackRoom& stackRoom() { return stackRoom_; }

    /// Number of directories in the main chain; 0 before it is read.
    [[nodiscard]] std::uint32_t getNumIfds() const;
    /// The main chain; null before it is read.
    [[nodiscard]] const IFDSet* ifdSet() const { return ifdSet_.get(); }

    /// A new host value: the structure array of the main chain, or an empty 0 x 0 double array
    /// when there is none.
    [[nodiscard]] qvArray* outputValue();

    /// The absolute position of an offset from the header. The sum wraps at 64 bits.
    [[nodiscard]] std::int64_t absolutePosition(std::uint64_t offset) const;
    /// The absolute position in the file; -1 if the system does not report it.
    [[nodiscard]] std::int64_t position() const;
    /// Seeks to an absolute position. Returns false on failure.
    [[nodiscard]] bool seek(std::int64_t position);
    /// Seeks by a distance. Returns false on failure.
    [[nodiscard]] bool skip(std::int64_t distance);
    /// Reads `count` items of `size` bytes, as stored in the file. Returns the number of whole
    /// items read.
    [[nodiscard]] std::size_t read(void* items, std::size_t size, std::size_t count);
    /// Reads one number and converts it to this computer's byte order. Returns false, with `number`
    /// unspecified, if the file ends before it is complete.
    template <class Number>
    [[nodiscard]] bool readNumber(Number* number);

    /// A number from a raw entry in memory, in this computer's byte order.
    template <class Number>
    [[nodiscard]] Number entryField(const std::byte* field) const;
    /// Count (bytes 4 to 7) and value or offset (bytes 8 to 11) of a raw entry.
    [[nodiscard]] std::uint32_t entryCountField(const std::byte* entry) const {
        return entryField<std::uint32_t>(entry + 4);
    }
    [[nodiscard]] std::uint32_t entryOffsetField(const std::byte* entry) const {
        return entryField<std::uint32_t>(entry + 8);
    }

protected:
    void setFormatType(FormatType formatType) { formatType_ = formatType; }
    void setLayout(std::int32_t entrySize, std::int32_t countSize, std::int32_t offsetSize);
    void appendDefaultFieldName(std::string_view name) { defaultFieldNames_.emplace_back(name); }
    void setIfdSet(std::unique_ptr<IFDSet> ifdSet);

    // Steps that both header readers share. Classic TIFF and BigTIFF have different message
    // identifiers, so the caller passes them.
    void beginHeader();
    void readVersion(const char* identifier);
    /// Seeks to the first directory at `offset` from the header, or throws `VeltraceFatalError`:
    /// `offsetIdentifier` past the end of the file, `seekIdentifier` if the seek fails.
    void seekToFirstIfd(std::uint64_t offset, const char* offsetIdentifier,
                        const char* seekIdentifier);

private:
    friend struct TagFilePeer;  // tests check the members

    void determineComputerByteOrder();
    void readByteOrder();
    void openFile(const char* failureIdentifier);
    void copyDescription(const TagFile& other);

    FormatType formatType_ = FormatType::jpeg;
    InputFile file_;
    std::string fileName_;
    bool swapFlag_ = false;
    std::int64_t offsetBase_ = 0;
    HeaderByteOrder headerByteOrder_{};
    bool computerIsBigEndian_ = false;
    bool computerIsLittleEndian_ = false;
    struct stat64 status_ {};
    std::unique_ptr<IFDSet> ifdSet_;
    std::int32_t entrySize_ = 12;
    std::int32_t countSize_ = 2;
    std::int32_t offsetSize_ = 4;
    std::array<unsigned char, 2> byteOrderMark_{};
    std::uint16_t version_ = 0;
    std::vector<std::string> defaultFieldNames_;
    StackRoom stackRoom_;
};

template <class Number>
bool TagFile::readNumber(Number* number) {
    const bool complete = read(number, sizeof *number, 1) == 1;
    if (complete) {
        swapBytes(number, sizeof *number, 1, swapFlag_);
    }
    return complete;
}

template <class Number>
Number TagFile::entryField(const std::byte* field) const {
    Number number{};
    std::memcpy(&number, field, sizeof number);
    swapBytes(&number, sizeof number, 1, swapFlag_);
    return number;
}

}  // namespace veltrace::module
