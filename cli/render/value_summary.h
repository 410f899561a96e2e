// Host values in one line.
#pragma once

#include <string>

#include "zephra/host/value.h"

namespace veltrace::cli {

/// `value` for a person, in one line that is safe for a terminal: characters without their trailing
/// NULs, numbers and cells separated by commas, the rows of a matrix by semicolons. What is long is
/// cut and its size told. Empty for an empty value and for characters that are all NUL.
[[nodiscard]] std::string summary(zephra::Value value);

}  // namespace veltrace::cli
