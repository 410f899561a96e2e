// The text of a message.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <string>

namespace zephra {

/// Length at which formatted text is cut off.
constexpr std::size_t kMaxFormattedLength = std::size_t{64} * 1024;
/// Largest width and precision of a conversion; a larger one counts as this.
constexpr int kMaxWidth = 1024;

/// The text that a module sends with `format` and `arguments`.
///
/// Modules send two kinds of formats: string literals, which come with the arguments that they
/// name, and finished texts, composed at run time from the content of a file, which come with none.
/// In a finished text a '%' is a percent sign. To read an argument for it would let a file read the
/// memory of this process, and with "%n" write to it. A literal is recognised by its place: it lies
/// in a read-only segment of the program or of a loaded library, where nothing composed at run time
/// can be. Conversions are interpreted only there.
///
/// The conversions are %s %c %d %i %u %x %f %g and %%, with the flags "-+ #0", a width and a
/// precision in digits, and the lengths l, ll and z for integers. A null string prints "(null)".
/// Anything else after a '%' is printed as it is, and so is the rest of the text, since it is
/// unknown which arguments belong to it. A null format is an empty text. May throw std::bad_alloc.
[[nodiscard]] std::string formatMessage(const char* format, std::va_list arguments);

}  // namespace zephra
