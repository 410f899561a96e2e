// One row of the tag dictionary.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>

namespace veltrace::module {

/// The name is a literal: static and NUL-terminated.
struct TagName {
    std::uint16_t id;
    std::string_view name;
};

constexpr bool strictlyAscending(std::span<const TagName> rows) {
    return std::ranges::adjacent_find(rows, std::ranges::greater_equal{}, &TagName::id) ==
           rows.end();
}

/// The name of a tag, or an empty one.
constexpr std::string_view nameIn(std::span<const TagName> rows, std::uint16_t id) {
    const auto row = std::ranges::lower_bound(rows, id, {}, &TagName::id);
    return row != rows.end() && row->id == id ? row->name : std::string_view{""};
}

}  // namespace veltrace::module
