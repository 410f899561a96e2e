// The units in which the format standards define the numbers of a field.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace veltrace::cli {

/// What a field says of the unit of another.
struct UnitWord {
    std::string_view says;  ///< its text, or its number as text
    std::string_view mark;  ///< what then follows the number
};

struct Unit {
    std::string_view field;
    std::array<std::string_view, 3> marks;  ///< what follows each of its numbers
    std::size_t numbers = 1;
    std::string_view namedBy = {};  ///< the field beside it that has one of `words`, if any
    std::span<const UnitWord> words = {};
    bool isQuotient = false;  ///< customarily said as 1/n
};

/// The unit of the field `name`; null for one that has none.
[[nodiscard]] const Unit* unitOf(std::string_view name);

}  // namespace veltrace::cli
