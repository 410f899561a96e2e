// Comparison of an output with the one in which nothing was refused.
#pragma once

#include <cstddef>
#include <optional>

#include "zephra/host/value.h"

namespace veltrace::test {

/// How many places are empty in `value` and not in `usual`. Nothing when the two differ otherwise:
/// in classes, dimensions, names of fields, or contents. NaN equals NaN.
[[nodiscard]] std::optional<std::size_t> emptiedPlaces(zephra::Value usual, zephra::Value value);

}  // namespace veltrace::test
