// Bytes from files, made safe to show.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace veltrace::cli {

/// `bytes` as one line that a terminal shows as text: printable UTF-8 stays, a backslash is
/// doubled, a newline, carriage return or tab becomes \n, \r or \t, and every byte of any other
/// control character (see `isPrintable`) or of invalid UTF-8 becomes \xHH.
[[nodiscard]] std::string visible(std::string_view bytes);

/// Whether `bytes` is valid UTF-8 without control characters: C0, DEL, C1, the separators of lines
/// and paragraphs (U+2028, U+2029), and those that change the text direction (Bidi_Control).
[[nodiscard]] bool isPrintable(std::string_view bytes);

/// The first bytes of `bytes`, at most `limit`, without cutting a UTF-8 character.
[[nodiscard]] std::string_view firstBytes(std::string_view bytes, std::size_t limit);

/// A text of a file without the NULs at its end.
[[nodiscard]] std::string withoutFinalNuls(std::string text);

}  // namespace veltrace::cli
