#include "grid/grid_file.h"

namespace veltrace::test {

namespace {

constexpr std::uint32_t kOutsideTheFile = 0x7FFF0000;

}  // namespace

std::size_t GridFile::tableSize(const GridDirectory& directory) const {
    return isBig() ? 8 + 20 * directory.entries.size() + 8 : 2 + 12 * directory.entries.size() + 4;
}

std::size_t GridFile::outsideSize(const GridEntry& entry) const {
    const bool isOutside = entry.target == nullptr && entry.value.size() > inlineCapacity();
    return isOutside ? entry.value.size() : 0;
}

std::size_t GridFile::positionOf(const GridDirectory& directory) const {
    std::size_t position = isBig() ? 16 : 8;
    for (const GridDirectory* earlier : {&image, &inner, &innermost}) {
        if (earlier == &directory) {
            break;
        }
        position += tableSize(*earlier);
        for (const GridEntry& entry : earlier->entries) {
            position += outsideSize(entry);
        }
    }
    return position;
}

void GridFile::place(GridDirectory& directory) const {
    std::size_t position = positionOf(directory) + tableSize(directory);
    for (GridEntry& entry : directory.entries) {
        const std::size_t size = outsideSize(entry);
        if (entry.target != nullptr) {
            entry.offset = static_cast<std::uint32_t>(positionOf(*entry.target));
        } else if (size != 0) {
            entry.offset = entry.lostValue ? kOutsideTheFile : static_cast<std::uint32_t>(position);
        }
        position += size;
    }
}

Bytes GridFile::bytes() {
    Bytes tiff = bytesOf(order_ == Order::big ? "MM" : "II");
    if (isBig()) {
        // The mark of a BigTIFF file is 2B 00 in either order.
        append(tiff, Order::little, std::uint16_t{43});
        append(tiff, order_, std::uint16_t{8});
        append(tiff, order_, std::uint16_t{0});
        append(tiff, order_, std::uint64_t{16});
    } else {
        append(tiff, order_, std::uint16_t{42});
        append(tiff, order_, std::uint32_t{8});
    }
    for (GridDirectory* directory : {&image, &inner, &innermost}) {
        place(*directory);
        appendDirectory(tiff, *directory);
    }
    return container_ == Container::jpeg ? jpegWithExif(tiff) : tiff;
}

void GridFile::appendDirectory(Bytes& bytes, const GridDirectory& directory) const {
    const std::size_t entries = directory.entries.size();
    if (isBig()) {
        append(bytes, order_, static_cast<std::uint64_t>(entries));
    } else {
        append(bytes, order_, static_cast<std::uint16_t>(entries));
    }
    for (const GridEntry& entry : directory.entries) {
        appendEntry(bytes, entry);
    }
    bytes.resize(bytes.size() + inlineCapacity());  // no next directory
    for (const GridEntry& entry : directory.entries) {
        if (outsideSize(entry) != 0) {
            bytes.insert(bytes.end(), entry.value.begin(), entry.value.end());
        }
    }
}

void GridFile::appendEntry(Bytes& bytes, const GridEntry& entry) const {
    append(bytes, order_, entry.tag);
    append(bytes, order_, entry.type);
    append(bytes, order_, entry.count);
    const bool hasOffset = entry.target != nullptr || outsideSize(entry) != 0;
    if (isBig() || hasOffset) {
        append(bytes, order_, entry.offset);
    }
    if (isBig() || !hasOffset) {
        Bytes inside = hasOffset ? Bytes{} : entry.value;
        inside.resize(inlineCapacity());
        bytes.insert(bytes.end(), inside.begin(), inside.end());
    }
}

}  // namespace veltrace::test
