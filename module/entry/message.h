// Composes message texts.
#pragma once

#include <charconv>
#include <concepts>
#include <limits>
#include <string>
#include <string_view>

namespace veltrace::module {

namespace detail {

inline void appendPiece(std::string& text, std::string_view piece) {
    text.append(piece);
}

inline void appendPiece(std::string& text, char piece) {
    text.push_back(piece);
}

// Ignores the host's locale, so that no grouping reaches a message.
template <std::integral Number>
requires(sizeof(Number) > 1) void appendPiece(std::string& text, Number number) {
    char digits[std::numeric_limits<Number>::digits10 + 2];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), number);
    text.append(std::begin(digits), end.ptr);
}

}  // namespace detail

/// Joins the pieces: texts and characters unchanged, numbers in decimal. A byte that is meant as a
/// number must be widened first.
template <class... Pieces>
[[nodiscard]] std::string message(const Pieces&... pieces) {
    std::string text;
    (detail::appendPiece(text, pieces), ...);
    return text;
}

/// A file name as messages show it, in double quotes.
[[nodiscard]] inline std::string inQuotes(std::string_view fileName) {
    return message('"', fileName, '"');
}

}  // namespace veltrace::module
