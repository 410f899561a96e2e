// Where the numbers of a TIFF structure are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "support/bytes.h"

namespace veltrace::fuzz {

using test::Bytes;

/// A directory: where its count is, and how many of its entries are whole.
struct Table {
    std::size_t position;
    std::size_t entries;
};

/// Finds the directories of a file by its offsets: in TIFF and BigTIFF files from the first byte
/// on, in JPEG files behind the first "Exif" identifier. Never fails; what leads out of the file
/// is not followed. Positions count from the start of the file, offsets from the TIFF header.
class TiffMap {
public:
    explicit TiffMap(const Bytes& bytes);

    [[nodiscard]] bool isBigEndian() const { return isBigEndian_; }
    [[nodiscard]] std::size_t header() const { return header_; }
    [[nodiscard]] std::size_t countSize() const { return isBigTiff_ ? 8 : 2; }
    [[nodiscard]] std::size_t entrySize() const { return isBigTiff_ ? 20 : 12; }
    [[nodiscard]] std::size_t offsetSize() const { return isBigTiff_ ? 8 : 4; }
    [[nodiscard]] std::size_t inlineSize() const { return isBigTiff_ ? 8 : 4; }

    /// Position of the header's offset of the first directory.
    [[nodiscard]] std::size_t firstOffset() const { return header_ + offsetSize(); }
    /// Each directory once, in the order in which they were found; at most 64.
    [[nodiscard]] const std::vector<Table>& tables() const { return tables_; }
    /// Position of an entry, and of the offset behind the last one.
    [[nodiscard]] std::size_t entry(const Table& table, std::size_t index) const;
    [[nodiscard]] std::size_t next(const Table& table) const;
    /// Where the value of the entry at this position is: inside, or where its offset says.
    [[nodiscard]] std::size_t value(const Bytes& bytes, std::size_t entry) const;

    /// A number in the file's byte order; 0 when it is not there in full.
    [[nodiscard]] std::uint64_t number(const Bytes& bytes, std::size_t position,
                                       std::size_t width) const;
    /// False when there is no room for the number, which is then not written.
    bool setNumber(Bytes& bytes, std::size_t position, std::size_t width,
                   std::uint64_t number) const;

private:
    void follow(const Bytes& bytes, std::uint64_t offset);
    void followPointers(const Bytes& bytes, Table table);

    std::size_t header_;
    bool isBigEndian_ = false;
    bool isBigTiff_ = false;
    std::vector<Table> tables_;
};

/// Tags whose value is the offset of a directory.
inline constexpr std::uint16_t kPointerTags[] = {330, 34665, 34853, 40965};

}  // namespace veltrace::fuzz
