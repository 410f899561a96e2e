#include "field_table.h"

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
    : size_(names.size()), slots_(std::bit_ceil(names.size() * 2)), last_(names.size()) {
    std::size_t bytes = 0;
    fields_.reserve(names.size());
    for (const char* const name : names) {
        const std::size_t length = std::strlen(name);
        const auto index = static_cast<std::uint32_t>(fields_.size());
        fields_.push_back(
            {static_cast<std::uint32_t>(bytes), static_cast<std::uint32_t>(length), index + 1});
        bytes += length + 1;
    }
    text_.resize(bytes);
    for (std::size_t i = 0; i < names.size(); ++i) {
        std::memcpy(text_.data() + fields_[i].begin, names[i], fields_[i].length + std::size_t{1});
        const std::uint32_t hash = hashOf(name(i));
        Slot& slot = slots_[slotOf(name(i), hash)];
        if (slot.field == 0) {
            slot = {static_cast<std::uint32_t>(i) + 1, hash};
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
        fields_[last_].successor = static_cast<std::uint32_t>(*field);
    }
    last_ = *field;
    return *field;
}

std::size_t FieldTable::slotOf(std::string_view wanted, std::uint32_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = hash & mask;
    while (slots_[slot].field != 0 &&
           (slots_[slot].hash != hash || name(slots_[slot].field - 1) != wanted)) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

}  // namespace zephra
