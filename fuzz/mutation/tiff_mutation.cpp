#include "mutation/tiff_mutation.h"

#include <algorithm>
#include <utility>

namespace veltrace::fuzz {

namespace {

// Of every treatment: baseline, pointers, words, texts, codes, unknown.
constexpr std::uint16_t kTags[] = {
    0,     1,     2,     254,   255,   256,   257,   258,   259,   262,   263,   266,   270,
    271,   273,   274,   277,   278,   279,   280,   281,   282,   283,   284,   290,   291,
    296,   297,   301,   306,   317,   318,   320,   322,   325,   330,   332,   338,   339,
    340,   347,   512,   513,   529,   530,   531,   532,   700,   4096,  4097,  33432, 33434,
    34665, 34675, 34853, 36864, 37121, 37383, 37500, 37510, 40961, 40965, 41986, 50000, 65535};
constexpr std::uint16_t kTypes[] = {0, 1,  2,  3,  4,  5,  6,  7,   8,
                                    9, 10, 11, 12, 13, 14, 16, 255, 0xFFFF};
constexpr std::uint64_t kNumbers[] = {0,
                                      1,
                                      2,
                                      3,
                                      4,
                                      5,
                                      8,
                                      9,
                                      0x7F,
                                      0x80,
                                      0xFF,
                                      0x100,
                                      0x7FFF,
                                      0x8000,
                                      0xFFFF,
                                      0x10000,
                                      0x1FFFFFFF,
                                      0x20000000,
                                      0x7FFFFFFF,
                                      0x80000000,
                                      0xFFFFFFFF,
                                      0x100000000,
                                      0x7FFFFFFFFFFFFFFF,
                                      0x8000000000000000,
                                      0xFFFFFFFFFFFFFFFF};
constexpr std::size_t kWidths[] = {1, 2, 4, 8};

}  // namespace

TiffMutation::TiffMutation(Bytes bytes, std::size_t maxSize, Random& random)
    : bytes_(std::move(bytes)), maxSize_(maxSize), random_(random), map_(bytes_) {}

bool TiffMutation::chooseTable() {
    if (map_.tables().empty()) {
        return false;
    }
    table_ = random_.oneOf(map_.tables());
    return true;
}

bool TiffMutation::chooseEntry() {
    if (!chooseTable() || table_.entries == 0) {
        return false;
    }
    entry_ = map_.entry(table_, random_.below(table_.entries));
    return true;
}

bool TiffMutation::set(std::size_t position, std::size_t width, std::uint64_t number) {
    return map_.setNumber(bytes_, position, width, number);
}

/// A directory, a place in one, the end, or where no file reaches.
std::uint64_t TiffMutation::anyTarget() {
    const std::size_t end = bytes_.size() - std::min(bytes_.size(), map_.header());
    switch (random_.below(8)) {
        case 0:
            return end - std::min(end, random_.below(4));
        case 1:
            return random_.oneOf(kNumbers);
        case 2:
            return random_.below(end);
        default: {
            if (map_.tables().empty()) {
                return random_.below(end);
            }
            const Table target = random_.oneOf(map_.tables());
            const std::size_t inside = random_.oneIn(4) ? random_.below(map_.entrySize()) : 0;
            return target.position + inside - map_.header();
        }
    }
}

bool TiffMutation::changeTag() {
    return chooseEntry() && set(entry_, 2, random_.oneOf(kTags));
}

bool TiffMutation::changeType() {
    return chooseEntry() && set(entry_ + 2, 2, random_.oneOf(kTypes));
}

bool TiffMutation::changeCount() {
    if (!chooseEntry()) {
        return false;
    }
    const std::uint64_t before = map_.number(bytes_, entry_ + 4, 4);
    const std::uint64_t near[] = {before + 1, before == 0 ? 0 : before - 1, before * 2,
                                  bytes_.size(), random_.below(bytes_.size())};
    return set(entry_ + 4, 4, random_.oneIn(2) ? random_.oneOf(near) : random_.oneOf(kNumbers));
}

bool TiffMutation::changeOffset() {
    return chooseEntry() && set(entry_ + 8, 4, anyTarget());
}

bool TiffMutation::changeValue() {
    if (!chooseEntry()) {
        return false;
    }
    const std::size_t width = random_.oneOf(kWidths);
    const std::size_t place = map_.value(bytes_, entry_) + width * random_.below(6);
    return set(place, width, random_.oneIn(4) ? random_.byte() : random_.oneOf(kNumbers));
}

bool TiffMutation::makePointer(std::uint64_t offset) {
    const std::uint64_t tag = map_.number(bytes_, entry_, 2);
    const bool isPointer = std::ranges::find(kPointerTags, tag) != std::end(kPointerTags);
    if (!isPointer || random_.oneIn(4)) {
        set(entry_, 2, random_.oneOf(kPointerTags));
        set(entry_ + 2, 2, random_.oneIn(2) ? 4 : 13);
        set(entry_ + 4, 4, 1);
    }
    return set(entry_ + 8, 4, offset);
}

bool TiffMutation::pointEntry() {
    return chooseEntry() && makePointer(anyTarget());
}

bool TiffMutation::pointNext() {
    return chooseTable() && set(map_.next(table_), map_.offsetSize(), anyTarget());
}

bool TiffMutation::pointFirst() {
    return set(map_.firstOffset(), map_.offsetSize(), anyTarget());
}

bool TiffMutation::changeEntryCount() {
    if (!chooseTable()) {
        return false;
    }
    const std::uint64_t near[] = {table_.entries + 1, table_.entries / 2, 0, bytes_.size() / 12};
    return set(table_.position, map_.countSize(),
               random_.oneIn(2) ? random_.oneOf(near) : random_.oneOf(kNumbers));
}

bool TiffMutation::duplicateEntry() {
    if (!chooseEntry()) {
        return false;
    }
    const Bytes copy(bytes_.begin() + static_cast<std::ptrdiff_t>(entry_),
                     bytes_.begin() + static_cast<std::ptrdiff_t>(entry_ + map_.entrySize()));
    if (!chooseEntry()) {
        return false;
    }
    std::ranges::copy(copy, bytes_.begin() + static_cast<std::ptrdiff_t>(entry_));
    return true;
}

bool TiffMutation::swapEntries() {
    if (!chooseEntry() || table_.entries < 2) {
        return false;
    }
    const std::size_t other = map_.entry(table_, random_.below(table_.entries));
    if (other == entry_) {
        return false;
    }
    const auto first = bytes_.begin() + static_cast<std::ptrdiff_t>(entry_);
    const auto size = static_cast<std::ptrdiff_t>(map_.entrySize());
    std::swap_ranges(first, first + size, bytes_.begin() + static_cast<std::ptrdiff_t>(other));
    return true;
}

// The table gets shorter, so that nothing behind it moves.
bool TiffMutation::removeEntry() {
    if (!chooseEntry()) {
        return false;
    }
    const auto at = bytes_.begin() + static_cast<std::ptrdiff_t>(entry_);
    const std::size_t end = std::min(map_.next(table_) + map_.offsetSize(), bytes_.size());
    std::copy(at + static_cast<std::ptrdiff_t>(map_.entrySize()),
              bytes_.begin() + static_cast<std::ptrdiff_t>(end), at);
    return set(table_.position, map_.countSize(), table_.entries - 1);
}

bool TiffMutation::appendTable() {
    if (!chooseTable()) {
        return false;
    }
    const std::size_t end = std::min(map_.next(table_) + map_.offsetSize(), bytes_.size());
    if (bytes_.size() + end - table_.position > maxSize_) {
        return false;
    }
    const std::size_t place = bytes_.size();
    for (std::size_t i = table_.position; i < end; ++i) {
        bytes_.push_back(bytes_[i]);
    }
    if (random_.oneIn(2) && chooseEntry()) {
        return makePointer(place - map_.header());
    }
    return chooseTable() && set(map_.next(table_), map_.offsetSize(), place - map_.header());
}

bool TiffMutation::flipByteOrder() {
    const std::uint64_t mark = map_.isBigEndian() ? 0x4949 : 0x4D4D;
    return set(map_.header(), 2, mark);
}

bool TiffMutation::grow() {
    const std::size_t room = maxSize_ - std::min(maxSize_, bytes_.size());
    const std::size_t step = std::min(room, 1 + random_.below(64));
    const bool isZero = random_.oneIn(2);
    for (std::size_t i = 0; i < step; ++i) {
        bytes_.push_back(isZero ? std::uint8_t{0} : random_.byte());
    }
    return step > 0;
}

bool TiffMutation::truncate() {
    if (!chooseTable()) {
        return false;
    }
    const std::size_t end = map_.next(table_) + map_.offsetSize();
    const std::size_t size = table_.position + random_.below(end - table_.position);
    if (size >= bytes_.size()) {
        return false;
    }
    bytes_.resize(size);
    return true;
}

bool TiffMutation::insertSegment() {
    constexpr std::uint8_t kMarkers[] = {0xE0, 0xE1, 0xE2, 0xFE, 0xDB, 0xDA, 0xC0, 0xD0, 0x01};
    const std::size_t length = random_.below(20);
    if (map_.header() < 2 || bytes_.size() + 2 + length > maxSize_) {
        return false;
    }
    Bytes segment{0xFF, random_.oneOf(kMarkers)};
    for (std::size_t i = 0; i < length; ++i) {
        segment.push_back(i == 0 ? std::uint8_t{0} : random_.byte());
    }
    if (length >= 2 && !random_.oneIn(4)) {
        segment[3] = static_cast<std::uint8_t>(length);
    }
    bytes_.insert(bytes_.begin() + 2, segment.begin(), segment.end());
    return true;
}

std::span<const TiffMutation::Change> TiffMutation::all() {
    static constexpr Change kAll[] = {
        &TiffMutation::changeTag,
        &TiffMutation::changeType,
        &TiffMutation::changeCount,
        &TiffMutation::changeOffset,
        &TiffMutation::changeValue,
        &TiffMutation::pointEntry,
        &TiffMutation::pointNext,
        &TiffMutation::pointFirst,
        &TiffMutation::changeEntryCount,
        &TiffMutation::duplicateEntry,
        &TiffMutation::swapEntries,
        &TiffMutation::removeEntry,
        &TiffMutation::appendTable,
        &TiffMutation::flipByteOrder,
        &TiffMutation::grow,
        &TiffMutation::truncate,
        &TiffMutation::insertSegment,
    };
    return kAll;
}

Bytes mutated(Bytes bytes, std::size_t maxSize, Random& random) {
    for (std::size_t changes = 1 + random.below(3); changes > 0; --changes) {
        TiffMutation mutation(bytes, maxSize, random);
        if ((mutation.*random.oneOf(TiffMutation::all()))()) {
            bytes = mutation.bytes();
        }
    }
    return bytes;
}

}  // namespace veltrace::fuzz
