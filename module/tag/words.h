// Tables that turn an enumerated code into a word.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>

namespace veltrace::module {

/// The text is a literal, with a NUL after its last character.
struct Word {
    std::int32_t code;
    std::string_view text;
};

/// The codes of one tag: words ascending by code, and the one word for every code that has none.
struct WordTable {
    std::uint16_t tagId;
    std::span<const Word> rows;
    std::string_view fallback;
};

constexpr bool strictlyAscending(std::span<const Word> rows) {
    return std::ranges::adjacent_find(rows, std::ranges::greater_equal{}, &Word::code) ==
           rows.end();
}

constexpr std::string_view wordFor(const WordTable& table, std::int32_t code) {
    const auto row = std::ranges::lower_bound(table.rows, code, {}, &Word::code);
    return row != table.rows.end() && row->code == code ? row->text : table.fallback;
}

}  // namespace veltrace::module
