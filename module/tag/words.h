// Tables that map enumeration codes to words.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>

namespace veltrace::module {

/// The text is a literal: static and NUL-terminated.
struct Word {
    std::int32_t code;
    std::string_view text;
};

/// The words of one tag, ascending by code, and the fallback for any other code.
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
