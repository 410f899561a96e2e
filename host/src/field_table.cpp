#include "field_table.h"

#include <algorithm>

namespace zephra {

namespace {

bool areUnique(std::span<const char* const> names) {
    std::vector<std::string_view> sorted(names.begin(), names.end());
    // By length first, which is faster: any order puts equal names side by side.
    std::ranges::sort(sorted, [](std::string_view left, std::string_view right) {
        return left.size() != right.size() ? left.size() < right.size() : left < right;
    });
    return std::ranges::adjacent_find(sorted) == sorted.end();
}

}  // namespace

FieldTable::FieldTable(std::span<const char* const> names)
    : names_(names.begin(), names.end()), namesAreUnique_(areUnique(names)) {}

std::optional<std::size_t> FieldTable::find(std::string_view name) const {
    return findIn(0, size(), name);
}

std::optional<std::size_t> FieldTable::findNext(std::string_view name) {
    // Only a search from the front finds the first of several fields.
    const std::size_t start = namesAreUnique_ ? next_ : 0;
    std::optional<std::size_t> field = findIn(start, size(), name);
    if (!field) {
        field = findIn(0, start, name);
    }
    if (field) {
        next_ = *field + 1;
    }
    return field;
}

std::optional<std::size_t> FieldTable::findIn(std::size_t begin, std::size_t end,
                                              std::string_view name) const {
    for (std::size_t i = begin; i < end; ++i) {
        if (names_[i] == name) {
            return i;
        }
    }
    return std::nullopt;
}

}  // namespace zephra
