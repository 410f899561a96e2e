#include "field_table.h"

#include <bit>
#include <functional>

namespace zephra {

FieldTable::FieldTable(std::span<const char* const> names)
    : slots_(std::bit_ceil(names.size() * 2)) {
    ends_.reserve(names.size());
    for (const char* const name : names) {
        text_ += name;
        ends_.push_back(text_.size());
        std::uint32_t& slot = slots_[slotOf(name)];
        if (slot == 0) {
            slot = static_cast<std::uint32_t>(ends_.size());
        }
    }
}

std::string_view FieldTable::name(std::size_t index) const {
    const std::size_t begin = index == 0 ? 0 : ends_[index - 1];
    return std::string_view(text_).substr(begin, ends_[index] - begin);
}

std::optional<std::size_t> FieldTable::find(std::string_view name) const {
    const std::uint32_t slot = slots_[slotOf(name)];
    return slot == 0 ? std::nullopt : std::optional<std::size_t>(slot - 1);
}

/// The slot that holds `name`, or the free one where it belongs.
std::size_t FieldTable::slotOf(std::string_view wanted) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = std::hash<std::string_view>{}(wanted)&mask;
    while (slots_[slot] != 0 && name(slots_[slot] - 1) != wanted) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

}  // namespace zephra
