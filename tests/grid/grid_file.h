// Files with many entries whose parts are known in full.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/bytes.h"
#include "support/tiff_builder.h"

namespace veltrace::test {

enum class Container { classic, bigTiff, jpeg };

struct GridDirectory;

/// One entry: what stands in the file, and the same in numbers.
struct GridEntry {
    std::uint16_t tag = 0;
    std::uint16_t type = 0;
    std::uint32_t count = 0;
    Bytes value{};                  ///< in the file's byte order
    std::vector<double> numbers{};  ///< elements; of fractions numerator and denominator in turn
    std::string text{};             ///< of type ASCII
    bool lostValue = false;         ///< states an offset outside the file, if it states one
    const GridDirectory* target = nullptr;  ///< of a pointer tag

    std::uint32_t offset = 0;  ///< as it stands in the file; 0 with the value inside
};

struct GridDirectory {
    std::vector<GridEntry> entries;
};

/// A directory of images and at most one directory that is reached from there, which both may
/// point to a third one.
class GridFile {
public:
    GridFile(Container container, Order order) : container_(container), order_(order) {}
    GridFile(const GridFile&) = delete;  // entries point to directories of their file
    GridFile& operator=(const GridFile&) = delete;

    [[nodiscard]] Container container() const { return container_; }
    [[nodiscard]] Order order() const { return order_; }
    /// Bytes of a value that may stand inside its entry.
    [[nodiscard]] std::size_t inlineCapacity() const { return isBig() ? 8 : 4; }
    /// Position of the TIFF header in the file.
    [[nodiscard]] std::size_t base() const { return container_ == Container::jpeg ? 12 : 0; }

    GridDirectory image;
    GridDirectory inner;
    GridDirectory innermost;

    /// The file; sets the offsets of all entries.
    [[nodiscard]] Bytes bytes();

private:
    [[nodiscard]] bool isBig() const { return container_ == Container::bigTiff; }
    [[nodiscard]] std::size_t tableSize(const GridDirectory& directory) const;
    [[nodiscard]] std::size_t outsideSize(const GridEntry& entry) const;
    [[nodiscard]] std::size_t positionOf(const GridDirectory& directory) const;
    void place(GridDirectory& directory) const;
    void appendDirectory(Bytes& bytes, const GridDirectory& directory) const;
    void appendEntry(Bytes& bytes, const GridEntry& entry) const;

    Container container_;
    Order order_;
};

}  // namespace veltrace::test
