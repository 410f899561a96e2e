// Which part of all names a run takes.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace veltrace::cli {

/// One of `count` parts into which names fall by their bytes alone: every name is in exactly one,
/// the same on every machine.
struct Shard {
    std::uint32_t index = 1;  ///< from 1 to `count`
    std::uint32_t count = 1;

    [[nodiscard]] bool contains(std::string_view name) const;
};

/// Reads "I/N", decimal digits with 1 <= I <= N; nothing for any other text.
[[nodiscard]] std::optional<Shard> parseShard(std::string_view text);

}  // namespace veltrace::cli
