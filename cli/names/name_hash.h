// Hashes of names, the same on every machine and in every run.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

namespace veltrace::cli {

/// Wide enough that two names of one run do not share it.
using NameHash = std::pair<std::uint64_t, std::uint64_t>;

/// XXH3, 128 bits, the high ones first, without a seed.
[[nodiscard]] NameHash hashOf(std::string_view name);

/// XXH3, 64 bits, without a seed.
[[nodiscard]] std::uint64_t shortHashOf(std::string_view name);

/// One of `count` parts of all names. The part of a name depends on its bytes alone.
struct Shard {
    std::uint32_t index = 1;  ///< from 1 to `count`
    std::uint32_t count = 1;

    [[nodiscard]] bool contains(std::string_view name) const;
};

/// Reads "I/N", decimal digits with 1 <= I <= N; nothing for any other text.
[[nodiscard]] std::optional<Shard> parseShard(std::string_view text);

}  // namespace veltrace::cli
