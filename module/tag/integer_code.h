// Converts stored numbers to enumeration codes.
#pragma once

#include <cstdint>
#include <limits>

namespace veltrace::module {

/// Truncates toward zero. NaN, and what is then outside the signed 32-bit range, becomes
/// -2147483648, a code that no table contains.
constexpr std::int32_t integerCode(double value) {
    constexpr double kBelowRange = -2147483649.0;
    constexpr double kAboveRange = 2147483648.0;
    // False for NaN.
    const bool inRange = value > kBelowRange && value < kAboveRange;
    return inRange ? static_cast<std::int32_t>(value) : std::numeric_limits<std::int32_t>::min();
}

}  // namespace veltrace::module
