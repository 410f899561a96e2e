// Numbers in options.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace veltrace::cli {

/// A whole number in decimal digits; nothing for any other text and beyond 64 bits.
[[nodiscard]] std::optional<std::uint64_t> parseCount(std::string_view text);

/// A number of bytes: a count, which K, M, G or T, or one of these in lower case, multiplies by
/// 2^10, 2^20, 2^30 or 2^40.
[[nodiscard]] std::optional<std::uint64_t> parseSize(std::string_view text);

}  // namespace veltrace::cli
