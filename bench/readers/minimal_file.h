// A TIFF structure read by hand with stdio.
#pragma once

#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include "readers/reader.h"

namespace veltrace::bench {

struct CloseFile {
    void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

/// The part of the minimal reader that reads directories: the same tables and values in the same
/// layouts as the module (docs/file-layouts.md), and gives up where it gives up. It keeps the
/// numbers and nothing else, and counts as `countByModule` does.
class MinimalFile {
public:
    /// `file` is at the TIFF header. `size` is the size of the whole file in bytes.
    MinimalFile(std::FILE* file, std::uint64_t size, Format format);

    /// Reads the header and every directory.
    [[nodiscard]] Delivered readAll();

private:
    enum class Directory { image, exif, gps, interoperability };

    struct Entry {
        std::uint16_t tag;
        std::uint16_t type;
        std::uint32_t count;
        std::uint32_t offset;
        const unsigned char* inside;
    };

    struct Mark {
        Delivered delivered;
        std::size_t numbers;
    };

    [[nodiscard]] bool readHeader();
    [[nodiscard]] bool seekToFirstDirectory(std::uint64_t offset) const;
    /// False when a directory fails, and with it the chain.
    [[nodiscard]] bool readChain(Directory kind, unsigned depth);
    [[nodiscard]] bool readDirectory(Directory kind, unsigned depth, std::uint32_t* tableBytes);
    [[nodiscard]] bool readEntryCount(std::uint32_t* count) const;
    void readEntries(const std::vector<unsigned char>& table, Directory kind, unsigned depth);
    [[nodiscard]] bool moveToNext(std::uint32_t position, std::uint32_t tableBytes);
    [[nodiscard]] Entry entryAt(const unsigned char* bytes) const;
    [[nodiscard]] static std::uint64_t sizeOf(const Entry& entry);
    [[nodiscard]] bool readEntry(const Entry& entry, Directory kind, unsigned depth);
    [[nodiscard]] bool readSubDirectory(const Entry& entry, Directory parent, Directory kind,
                                        unsigned depth);
    [[nodiscard]] bool readValue(const Entry& entry);
    void take(const Entry& entry, const unsigned char* value);
    template <class Number>
    void takeNumbers(const unsigned char* value, std::size_t count);
    template <class Word>
    void takeRationals(const unsigned char* value, std::size_t count);

    [[nodiscard]] std::uint32_t entryBytes() const { return isBig_ ? 20 : 12; }
    [[nodiscard]] Mark mark() const { return {delivered_, numbers_.size()}; }
    void goBackTo(const Mark& mark);
    [[nodiscard]] bool seek(std::uint64_t offset) const;
    [[nodiscard]] bool isInside(std::uint64_t offset, std::uint64_t bytes) const;
    template <class Number>
    [[nodiscard]] bool readNumber(Number* number) const;
    template <class Number>
    [[nodiscard]] Number numberAt(const unsigned char* bytes) const;

    std::FILE* file_;
    std::uint64_t size_;
    Format format_;
    bool isBig_;
    bool swap_ = false;
    bool isBroken_ = false;  ///< the whole file is given up
    std::uint64_t base_ = 0;
    std::uint64_t directoriesLeft_;
    Delivered delivered_;
    std::vector<unsigned char> value_;
    std::vector<double> numbers_;
};

}  // namespace veltrace::bench
