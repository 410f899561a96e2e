#include "mutation/tiff_map.h"

#include <algorithm>
#include <iterator>

namespace veltrace::fuzz {

namespace {

constexpr std::size_t kMostTables = 64;

bool isJpeg(const Bytes& bytes) {
    return bytes.size() >= 2 && bytes[0] == 0xFF && bytes[1] == 0xD8;
}

std::size_t headerOf(const Bytes& bytes) {
    constexpr std::uint8_t kExif[] = {'E', 'x', 'i', 'f', 0, 0};
    if (!isJpeg(bytes)) {
        return 0;
    }
    const auto found = std::search(bytes.begin(), bytes.end(), std::begin(kExif), std::end(kExif));
    const auto behind = static_cast<std::size_t>(found - bytes.begin()) + std::size(kExif);
    return std::min(behind, bytes.size());
}

std::size_t elementSize(std::uint64_t type) {
    constexpr std::size_t kSizes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};
    return type < std::size(kSizes) ? kSizes[type] : 0;
}

}  // namespace

TiffMap::TiffMap(const Bytes& bytes) : header_(headerOf(bytes)) {
    isBigEndian_ = number(bytes, header_, 1) == 'M';
    isBigTiff_ = number(bytes, header_ + 2, 1) == 43;
    follow(bytes, number(bytes, firstOffset(), offsetSize()));
    for (std::size_t i = 0; i < tables_.size(); ++i) {
        followPointers(bytes, tables_[i]);
    }
}

void TiffMap::follow(const Bytes& bytes, std::uint64_t offset) {
    if (tables_.size() == kMostTables || offset == 0 ||
        offset >= bytes.size() - std::min(bytes.size(), header_ + countSize())) {
        return;
    }
    const std::size_t position = header_ + offset;
    const std::size_t room = (bytes.size() - position - countSize()) / entrySize();
    const std::uint64_t stated = number(bytes, position, countSize());
    if (std::ranges::find(tables_, position, &Table::position) == tables_.end()) {
        tables_.push_back({position, std::min<std::size_t>(stated, room)});
    }
}

void TiffMap::followPointers(const Bytes& bytes, Table table) {
    for (std::size_t i = 0; i < table.entries; ++i) {
        const std::size_t at = entry(table, i);
        const auto* const end = std::end(kPointerTags);
        if (std::find(std::begin(kPointerTags), end, number(bytes, at, 2)) != end) {
            follow(bytes, number(bytes, at + 8, 4));
        }
    }
    follow(bytes, number(bytes, next(table), offsetSize()));
}

std::size_t TiffMap::entry(const Table& table, std::size_t index) const {
    return table.position + countSize() + index * entrySize();
}

std::size_t TiffMap::next(const Table& table) const {
    return entry(table, table.entries);
}

std::size_t TiffMap::value(const Bytes& bytes, std::size_t entry) const {
    const std::uint64_t size =
        number(bytes, entry + 4, 4) * elementSize(number(bytes, entry + 2, 2));
    const bool isInside = size <= inlineSize();
    return isInside ? entry + entrySize() - inlineSize() : header_ + number(bytes, entry + 8, 4);
}

std::uint64_t TiffMap::number(const Bytes& bytes, std::size_t position, std::size_t width) const {
    if (position > bytes.size() || bytes.size() - position < width) {
        return 0;
    }
    std::uint64_t result = 0;
    for (std::size_t i = 0; i < width; ++i) {
        result = result << 8 | bytes[position + (isBigEndian_ ? i : width - 1 - i)];
    }
    return result;
}

bool TiffMap::setNumber(Bytes& bytes, std::size_t position, std::size_t width,
                        std::uint64_t number) const {
    if (position > bytes.size() || bytes.size() - position < width) {
        return false;
    }
    for (std::size_t i = 0; i < width; ++i) {
        const std::size_t place = isBigEndian_ ? width - 1 - i : i;
        bytes[position + place] = static_cast<std::uint8_t>(number >> (8 * i));
    }
    return true;
}

}  // namespace veltrace::fuzz
