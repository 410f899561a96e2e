#include "field_table.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace zephra {

namespace {

template <class Word>
std::uint64_t wordAt(const char* bytes) {
    Word word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

/// Both halves as one of 32 bits, whose products fit 64.
std::uint64_t folded(std::uint64_t word) {
    return (word >> 32) ^ (word & 0xFFFFFFFF);
}

/// Of the length and of up to 16 bytes at both ends, which tell nearly all names of one table
/// apart.
std::uint32_t hashOf(std::string_view name) {
    std::uint64_t first = 0;
    std::uint64_t last = 0;
    if (name.size() >= sizeof(std::uint64_t)) {
        first = wordAt<std::uint64_t>(name.data());
        last = wordAt<std::uint64_t>(name.data() + name.size() - sizeof(std::uint64_t));
    } else if (name.size() >= sizeof(std::uint32_t)) {
        first = wordAt<std::uint32_t>(name.data());
        last = wordAt<std::uint32_t>(name.data() + name.size() - sizeof(std::uint32_t));
    } else if (!name.empty()) {
        first = wordAt<std::uint8_t>(name.data());
        last = wordAt<std::uint8_t>(name.data() + name.size() - 1);
    }
    const std::uint64_t product = (folded(first) ^ 0x9E3779B9) * (folded(last) ^ 0x85EBCA6B);
    return static_cast<std::uint32_t>(folded(product) ^ name.size());
}

}  // namespace

FieldTable::FieldTable(std::span<const char* const> names)
    : size_(names.size()),
      fields_(std::make_unique_for_overwrite<Field[]>(size_ + 1)),
      slotCount_(std::bit_ceil(size_ * 2)),
      slots_(std::make_unique<Slot[]>(slotCount_)),
      last_(size_) {
    std::size_t end = 0;
    for (std::size_t i = 0; i < size_; ++i) {
        fields_[i] = {.begin = end, .successor = i + 1};
        end += std::strlen(names[i]) + 1;
    }
    fields_[size_].begin = end;
    text_ = std::make_unique_for_overwrite<char[]>(end);
    for (std::size_t i = 0; i < size_; ++i) {
        std::ranges::copy(std::span(names[i], name(i).size() + 1), &text_[fields_[i].begin]);
        const std::uint32_t hash = hashOf(name(i));
        Slot& slot = slots_[slotOf(name(i), hash)];
        if (slot.field == 0) {
            slot = {.field = static_cast<std::uint32_t>(i) + 1, .hash = hash};
        } else {
            // A later field of the name follows no other, or `findNext` would find it.
            fields_[i - 1].successor = slot.field - 1;
        }
    }
}

std::optional<std::size_t> FieldTable::find(std::string_view name) const {
    const std::uint32_t field = slots_[slotOf(name, hashOf(name))].field;
    return field == 0 ? std::nullopt : std::optional<std::size_t>(field - 1);
}

std::size_t FieldTable::findAnew(const char* name) {
    const std::optional<std::size_t> field = find(name);
    if (!field) {
        return kNone;
    }
    if (last_ < size_) {
        fields_[last_].successor = *field;
    }
    last_ = *field;
    return *field;
}

std::size_t FieldTable::slotOf(std::string_view wanted, std::uint32_t hash) const {
    const std::size_t mask = slotCount_ - 1;
    std::size_t slot = hash & mask;
    while (slots_[slot].field != 0 &&
           (slots_[slot].hash != hash || name(slots_[slot].field - 1) != wanted)) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

}  // namespace zephra
