#include "sweep/changes.h"

#include <algorithm>
#include <initializer_list>

namespace veltrace::test {

namespace {

constexpr std::uint16_t kPointerTags[] = {330, 34665, 34853, 40965};
constexpr std::uint16_t kTags[] = {0,   1,   254, 256, 257,   258,   259,  262, 270,
                                   271, 277, 282, 284, 290,   296,   317,  320, 332,
                                   339, 512, 531, 700, 34675, 50000, 65535};
constexpr std::uint16_t kTypesOfOneSize[][4] = {
    {1, 2, 6, 7}, {3, 8, 3, 8}, {4, 9, 11, 13}, {5, 10, 5, 10}};
constexpr std::uint16_t kTypesWithoutValue[] = {0, 14, 16, 17, 18, 255, 0x7FFF, 0x8000, 0xFFFF};

std::uint64_t allBits(std::size_t width) {
    return width == 8 ? ~std::uint64_t{0} : (std::uint64_t{1} << (8 * width)) - 1;
}

std::uint64_t topBit(std::size_t width) {
    return std::uint64_t{1} << (8 * width - 1);
}

std::size_t elementSize(std::uint16_t type) {
    constexpr std::size_t kSizes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};
    return type < std::size(kSizes) ? kSizes[type] : 0;
}

/// Walks over the little-endian file of a seed.
class Walk {
public:
    explicit Walk(const Seed& seed)
        : seed_(seed), isJpeg_(seed.header != 0), isBig_(!isJpeg_ && seed.little[2] == 43) {}

    std::vector<Change> run() {
        for (std::size_t i = 0; i < seed_.header; ++i) {
            const bool isLengthOfFirstSegment = i == 4 || i == 5;
            if (!isLengthOfFirstSegment) {
                anyValue(i, 1);
            }
        }
        if (isJpeg_) {
            anyValue(seed_.header + 2, 2);
        }
        if (isBig_) {
            anyValue(4, 2);
            anyValue(6, 2);
        }
        const std::size_t first = seed_.header + (isBig_ ? 8 : 4);
        values(first, offsetSize(),
               {size(), size() + 1, allBits(offsetSize()) / 2, allBits(offsetSize())});
        directory(number(first, offsetSize()));
        return changes_;
    }

private:
    [[nodiscard]] std::size_t offsetSize() const { return isBig_ ? 8 : 4; }
    [[nodiscard]] std::uint64_t size() const { return seed_.little.size() - seed_.header; }

    [[nodiscard]] std::uint64_t number(std::size_t position, std::size_t width) const {
        std::uint64_t result = 0;
        for (std::size_t i = width; i > 0; --i) {
            result = result << 8 | seed_.little.at(position + i - 1);
        }
        return result;
    }

    void values(std::size_t position, std::size_t width,
                std::initializer_list<std::uint64_t> replacements) {
        for (const std::uint64_t value : replacements) {
            changes_.push_back({position, width, value});
        }
    }

    void anyValue(std::size_t position, std::size_t width) {
        values(position, width, {0, allBits(width) / 2, topBit(width), allBits(width)});
        for (std::size_t bit = 0; bit < 8 * width; ++bit) {
            values(position, width, {number(position, width) ^ (std::uint64_t{1} << bit)});
        }
    }

    void positionOutside(std::size_t at, std::size_t width) {
        values(at, width, {size(), size() + 1, allBits(width) / 2, topBit(width), allBits(width)});
    }

    void directory(std::uint64_t offset) {
        const std::size_t position = seed_.header + offset;
        const std::size_t countSize = isBig_ ? 8 : 2;
        const std::size_t entrySize = isBig_ ? 20 : 12;
        const std::uint64_t entries = number(position, countSize);
        values(position, countSize,
               {0, allBits(countSize) / 2, topBit(countSize), allBits(countSize)});
        for (std::size_t i = 0; i < entries; ++i) {
            entry(position + countSize + i * entrySize);
        }
        const std::size_t next = position + countSize + entries * entrySize;
        values(next, offsetSize(), {0});
        positionOutside(next, offsetSize());
        if (const std::uint64_t nextOffset = number(next, offsetSize()); nextOffset != 0) {
            directory(nextOffset);
        }
    }

    void entry(std::size_t at) {
        const auto tag = static_cast<std::uint16_t>(number(at, 2));
        const auto type = static_cast<std::uint16_t>(number(at + 2, 2));
        const std::uint64_t count = number(at + 4, 4);
        for (const std::uint16_t other : kTags) {
            values(at, 2, {other});
        }
        for (const std::uint16_t other : kTypesWithoutValue) {
            values(at + 2, 2, {other});
        }
        for (const auto& types : kTypesOfOneSize) {
            if (std::ranges::find(types, type) != std::end(types)) {
                values(at + 2, 2, {types[0], types[1], types[2], types[3]});
            }
        }
        values(at + 4, 4, {0, allBits(4) / 2, topBit(4), allBits(4)});
        if (std::ranges::find(kPointerTags, tag) != std::end(kPointerTags)) {
            positionOutside(at + 8, 4);
            directory(number(at + 8, 4));
        } else {
            value(at, count, elementSize(type));
        }
    }

    void value(std::size_t at, std::uint64_t count, std::size_t element) {
        const std::size_t capacity = isBig_ ? 8 : 4;
        const std::uint64_t bytes = count * element;
        std::size_t begin = at + (isBig_ ? 12 : 8);
        if (bytes > capacity) {
            positionOutside(at + 8, 4);
            begin = seed_.header + number(at + 8, 4);
        }
        if (begin + bytes > seed_.little.size()) {
            return;
        }
        if (count > 0 && (bytes <= capacity || bytes - element > capacity)) {
            values(at + 4, 4, {count - 1});
        }
        const std::size_t width = isFraction(at) ? 4 : element;
        for (std::size_t i = 0; i < bytes; i += width) {
            anyValue(begin + i, width);
        }
    }

    [[nodiscard]] bool isFraction(std::size_t at) const {
        const std::uint64_t type = number(at + 2, 2);
        return type == 5 || type == 10;
    }

    const Seed& seed_;
    bool isJpeg_;
    bool isBig_;
    std::vector<Change> changes_;
};

}  // namespace

std::vector<Change> changesOf(const Seed& seed) {
    return Walk(seed).run();
}

Bytes changed(const Bytes& content, Order order, const Change& change) {
    Bytes result = content;
    for (std::size_t i = 0; i < change.width; ++i) {
        const std::size_t place = order == Order::little ? i : change.width - 1 - i;
        result.at(change.position + place) = static_cast<std::uint8_t>(change.value >> (8 * i));
    }
    return result;
}

}  // namespace veltrace::test
