// Whether bytes are JSON as this command writes it.
#pragma once

#include <cstdint>
#include <string_view>

namespace veltrace::cli {

/// Whether `json` is one JSON array, strictly by RFC 8259, in which every text is valid Unicode and
/// everything that `appendText` escapes is escaped. Takes a few bytes of memory for each level of
/// nesting, of which there may be `kMaxJsonDepth`, whatever the size. May throw std::bad_alloc.
[[nodiscard]] bool isJsonArray(std::string_view json);

/// Lists of places.
enum class ListedAs : std::uint8_t {
    nonfinite,  ///< {"at":<place>,"is":"NaN"}, or "Infinity" or "-Infinity"
    latin1,     ///< <place>
    omitted     ///< {"at":<place>,"size":[<rows>,<columns>]}
};

/// Whether `list` is empty, or elements of one kind separated by commas. A place starts with
/// "/info/".
[[nodiscard]] bool isListOf(ListedAs kind, std::string_view list);

}  // namespace veltrace::cli
