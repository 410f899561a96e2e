// Texts and numbers as JSON.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "render/bounded_text.h"

namespace veltrace::cli {

/// Whether `bytes` are UTF-8: no overlong form, no surrogate, nothing above U+10FFFF.
[[nodiscard]] bool isUtf8(std::string_view bytes);

/// `bytes` themselves if they are UTF-8; otherwise each of them, also those that would form
/// characters, as the character with its code, so that no byte is lost.
[[nodiscard]] std::string asCharacters(std::string_view bytes);

/// Appends `asCharacters(bytes)` as a JSON string. Control characters (C0, DEL, C1) and the line
/// separators U+2028 and U+2029 are escaped, so that neither a terminal nor a reader of lines
/// interprets them. Returns whether `bytes` are UTF-8. Throws OutputTooLarge.
bool appendText(BoundedText& out, std::string_view bytes);

/// Appends the shortest text that reads back as `number`, which is finite; without fraction and
/// exponent if whole and below 2^53. Minus zero is -0.0: readers parse -0 as an integer, which has
/// no sign for zero. Throws OutputTooLarge.
void appendNumber(BoundedText& out, double number);

/// The same for many of them, with commas between.
void appendNumbers(BoundedText& out, std::span<const double> numbers);

}  // namespace veltrace::cli
