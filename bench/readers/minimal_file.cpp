#include "readers/minimal_file.h"

#include <array>
#include <limits>

namespace veltrace::bench {

namespace {

constexpr std::array<std::uint32_t, 14> kTypeBytes{0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};
constexpr std::uint16_t kIfdType = 13;
constexpr std::uint16_t kImageWidth = 256;
constexpr std::uint16_t kImageLength = 257;
constexpr std::uint64_t kMostBytesAtOnce = std::uint64_t{1} << 30;
constexpr std::uint32_t kMostExifBytes = 65536;
// Each level takes well under a KiB of the stack.
constexpr unsigned kDeepest = 5000;

template <class Number>
Number swapped(Number number) {
    if constexpr (sizeof number == 2) {
        return std::bit_cast<Number>(__builtin_bswap16(std::bit_cast<std::uint16_t>(number)));
    } else if constexpr (sizeof number == 4) {
        return std::bit_cast<Number>(__builtin_bswap32(std::bit_cast<std::uint32_t>(number)));
    } else if constexpr (sizeof number == 8) {
        return std::bit_cast<Number>(__builtin_bswap64(std::bit_cast<std::uint64_t>(number)));
    } else {
        return number;
    }
}

}  // namespace

MinimalFile::MinimalFile(std::FILE* file, std::uint64_t size, Format format)
    : file_(file),
      size_(size),
      format_(format),
      isBig_(format == Format::bigTiff),
      // A chain of more directories than the file has bytes goes in circles.
      directoriesLeft_(size) {}

Delivered MinimalFile::readAll() {
    if (!readHeader() || !readChain(Directory::image, 0) || isBroken_) {
        return refusal();
    }
    delivered_.values = numbers_.size();
    return delivered_;
}

bool MinimalFile::readHeader() {
    base_ = static_cast<std::uint64_t>(std::ftell(file_));
    std::array<char, 2> mark{};
    if (std::fread(mark.data(), 1, mark.size(), file_) != mark.size() || mark[0] != mark[1] ||
        (mark[0] != 'I' && mark[0] != 'M')) {
        return false;
    }
    swap_ = (mark[0] == 'M') == (std::endian::native == std::endian::little);
    std::uint16_t version = 0;
    if (!readNumber(&version)) {
        return false;
    }
    if (!isBig_) {
        std::uint32_t offset = 0;
        return readNumber(&offset) && seekToFirstDirectory(offset);
    }
    std::uint32_t offsetSizeAndPadding = 0;
    std::uint64_t offset = 0;
    return readNumber(&offsetSizeAndPadding) && readNumber(&offset) && seekToFirstDirectory(offset);
}

/// As the module does, with signed numbers and the low half of the position.
bool MinimalFile::seekToFirstDirectory(std::uint64_t offset) const {
    const auto position = static_cast<std::int64_t>(base_ + offset);
    return position <= static_cast<std::int64_t>(size_) &&
           std::fseek(file_, static_cast<std::int32_t>(position), SEEK_SET) == 0;
}

bool MinimalFile::readChain(Directory kind, unsigned depth) {
    for (;;) {
        const auto position = static_cast<std::uint32_t>(std::ftell(file_));
        std::uint32_t tableBytes = 0;
        if (directoriesLeft_-- == 0) {
            isBroken_ = true;
        }
        if (isBroken_ || !readDirectory(kind, depth, &tableBytes)) {
            return false;
        }
        if (kind != Directory::image || format_ == Format::jpeg ||
            !moveToNext(position, tableBytes)) {
            return !isBroken_;
        }
    }
}

bool MinimalFile::moveToNext(std::uint32_t position, std::uint32_t tableBytes) {
    const std::uint64_t link = std::uint64_t{position} + (isBig_ ? 8 : 2) + tableBytes;
    if (std::fseek(file_, static_cast<std::int32_t>(link), SEEK_SET) != 0) {
        return false;
    }
    if (isBig_) {
        std::uint64_t next = 0;
        return readNumber(&next) && next != 0 && seek(next);
    }
    std::uint32_t next = 0;
    return readNumber(&next) && next != 0 && seek(next);
}

bool MinimalFile::readDirectory(Directory kind, unsigned depth, std::uint32_t* tableBytes) {
    std::uint32_t count = 0;
    if (!readEntryCount(&count)) {
        isBroken_ = isBroken_ || kind == Directory::image;
        return false;
    }
    const std::uint64_t bytes = std::uint64_t{count} * entryBytes();
    if (bytes == 0 || bytes > kMostBytesAtOnce || bytes > size_ ||
        (format_ == Format::jpeg && bytes > kMostExifBytes)) {
        return false;
    }
    std::vector<unsigned char> table(bytes);
    if (std::fread(table.data(), 1, bytes, file_) != bytes) {
        return false;
    }
    *tableBytes = static_cast<std::uint32_t>(bytes);
    readEntries(table, kind, depth);
    return !isBroken_;
}

bool MinimalFile::readEntryCount(std::uint32_t* count) const {
    if (isBig_) {
        std::uint64_t stated = 0;
        const bool isRead = readNumber(&stated);
        *count = static_cast<std::uint32_t>(stated);
        return isRead;
    }
    std::uint16_t stated = 0;
    const bool isRead = readNumber(&stated);
    *count = stated;
    return isRead;
}

void MinimalFile::readEntries(const std::vector<unsigned char>& table, Directory kind,
                              unsigned depth) {
    const Mark before = mark();
    // The module makes up fields for an image directory of a TIFF file, so it always has some.
    bool hasFields = kind == Directory::image && format_ != Format::jpeg;
    std::array<double, 2> sides{};
    for (std::size_t at = 0; at < table.size() && !isBroken_; at += entryBytes()) {
        const Entry entry = entryAt(table.data() + at);
        const std::size_t start = numbers_.size();
        if (!readEntry(entry, kind, depth)) {
            continue;
        }
        if (entry.tag == kImageWidth || entry.tag == kImageLength) {
            double& side = sides[entry.tag - kImageWidth];
            side = numbers_.size() > start ? numbers_[start] : side;
        } else {
            ++delivered_.entries;
            hasFields = true;
        }
    }
    if (!hasFields) {
        goBackTo(before);
        return;
    }
    ++delivered_.directories;
    for (const double side : sides) {
        delivered_.entries += side != 0 ? 1 : 0;
    }
}

MinimalFile::Entry MinimalFile::entryAt(const unsigned char* bytes) const {
    return {numberAt<std::uint16_t>(bytes), numberAt<std::uint16_t>(bytes + 2),
            numberAt<std::uint32_t>(bytes + 4), numberAt<std::uint32_t>(bytes + 8),
            bytes + (isBig_ ? 12 : 8)};
}

std::uint64_t MinimalFile::sizeOf(const Entry& entry) {
    return std::uint64_t{entry.count} * kTypeBytes[entry.type];
}

bool MinimalFile::readEntry(const Entry& entry, Directory kind, unsigned depth) {
    if (entry.type == 0 || entry.type >= kTypeBytes.size()) {
        return false;
    }
    // The module asks for memory for what a pointer states as well, by the low half of its size.
    if (static_cast<std::uint32_t>(sizeOf(entry)) > kMostBytesAtOnce) {
        return false;
    }
    switch (entry.tag) {
        case 330:
            return readSubDirectory(entry, kind, Directory::image, depth);
        case 34665:
            return readSubDirectory(entry, kind, Directory::exif, depth);
        case 34853:
            return readSubDirectory(entry, kind, Directory::gps, depth);
        case 40965:
            return readSubDirectory(entry, kind, Directory::interoperability, depth);
        default:
            return entry.type != kIfdType && readValue(entry);
    }
}

bool MinimalFile::readSubDirectory(const Entry& entry, Directory parent, Directory kind,
                                   unsigned depth) {
    isBroken_ = isBroken_ || depth == kDeepest;
    if (parent == Directory::gps || parent == Directory::interoperability || isBroken_) {
        return false;
    }
    const Mark before = mark();
    const std::uint64_t position = base_ + entry.offset;
    if (std::fseek(file_, static_cast<long>(position), SEEK_SET) == 0 &&
        readChain(kind, depth + 1)) {
        return true;
    }
    goBackTo(before);
    return false;
}

bool MinimalFile::readValue(const Entry& entry) {
    const std::uint64_t bytes = sizeOf(entry);
    if (bytes <= (isBig_ ? 8 : 4)) {
        take(entry, entry.inside);
        return true;
    }
    if (!isInside(entry.offset, bytes) || !seek(entry.offset)) {
        return false;
    }
    value_.resize(bytes);
    if (std::fread(value_.data(), 1, bytes, file_) != bytes) {
        return false;
    }
    take(entry, value_.data());
    return true;
}

void MinimalFile::take(const Entry& entry, const unsigned char* value) {
    switch (entry.type) {
        case 1:
        case 7:
            return takeNumbers<std::uint8_t>(value, entry.count);
        case 3:
            return takeNumbers<std::uint16_t>(value, entry.count);
        case 4:
            return takeNumbers<std::uint32_t>(value, entry.count);
        case 5:
            return takeRationals<std::uint32_t>(value, entry.count);
        case 6:
            return takeNumbers<std::int8_t>(value, entry.count);
        case 8:
            return takeNumbers<std::int16_t>(value, entry.count);
        case 9:
            return takeNumbers<std::int32_t>(value, entry.count);
        case 10:
            return takeRationals<std::int32_t>(value, entry.count);
        case 11:
            return takeNumbers<float>(value, entry.count);
        case 12:
            return takeNumbers<double>(value, entry.count);
        default:
            return;  // a text
    }
}

template <class Number>
void MinimalFile::takeNumbers(const unsigned char* value, std::size_t count) {
    const std::size_t start = numbers_.size();
    numbers_.resize(start + count);
    for (std::size_t i = 0; i < count; ++i) {
        numbers_[start + i] = static_cast<double>(numberAt<Number>(value + i * sizeof(Number)));
    }
}

template <class Word>
void MinimalFile::takeRationals(const unsigned char* value, std::size_t count) {
    const std::size_t start = numbers_.size();
    numbers_.resize(start + count);
    for (std::size_t i = 0; i < count; ++i) {
        const Word numerator = numberAt<Word>(value + 2 * i * sizeof(Word));
        const Word denominator = numberAt<Word>(value + (2 * i + 1) * sizeof(Word));
        numbers_[start + i] =
            denominator != 0 ? static_cast<double>(numerator) / static_cast<double>(denominator)
                             : std::numeric_limits<double>::quiet_NaN();
    }
}

/// Forgets what has come since.
void MinimalFile::goBackTo(const Mark& mark) {
    delivered_ = mark.delivered;
    numbers_.resize(mark.numbers);
}

bool MinimalFile::seek(std::uint64_t offset) const {
    return isInside(offset, 0) &&
           std::fseek(file_, static_cast<long>(base_ + offset), SEEK_SET) == 0;
}

/// Whether these bytes, at `offset` from the header, lie in the file.
bool MinimalFile::isInside(std::uint64_t offset, std::uint64_t bytes) const {
    return base_ <= size_ && offset <= size_ - base_ && bytes <= size_ - base_ - offset;
}

template <class Number>
bool MinimalFile::readNumber(Number* number) const {
    if (std::fread(number, sizeof *number, 1, file_) != 1) {
        return false;
    }
    *number = swap_ ? swapped(*number) : *number;
    return true;
}

template <class Number>
Number MinimalFile::numberAt(const unsigned char* bytes) const {
    Number number{};
    std::memcpy(&number, bytes, sizeof number);
    return swap_ ? swapped(number) : number;
}

}  // namespace veltrace::bench
