// Numbers that stand for names, the same on every machine and in every run.
#pragma once

#include <cstdint>
#include <string_view>
#include <utility>

namespace veltrace::cli {

/// Wide enough that two names of one run do not share it.
using NameHash = std::pair<std::uint64_t, std::uint64_t>;

/// XXH3, 64 bits, without a seed.
[[nodiscard]] std::uint64_t shortHashOf(std::string_view name);

/// XXH3, 128 bits, the high ones first, without a seed.
[[nodiscard]] NameHash hashOf(std::string_view name);

}  // namespace veltrace::cli
