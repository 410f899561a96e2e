// Numbers as text.
#pragma once

#include <string>

namespace veltrace::cli {

/// The shortest text that reads back as `number`; whole ones below 1e16 come without fraction and
/// exponent. Others are "NaN", "Infinity" and "-Infinity".
[[nodiscard]] std::string exactNumber(double number);

/// `number` for a person: whole ones as `exactNumber`, others to seven digits, for more of them say
/// nothing of a quotient that was stored as two integers or of a single-precision number.
[[nodiscard]] std::string briefNumber(double number);

}  // namespace veltrace::cli
