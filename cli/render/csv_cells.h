// The texts of one file between the process that renders them and the one that writes csv.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace veltrace::cli {

/// `cells`, each valid UTF-8, as a JSON array of strings. Throws OutputTooLarge when that has more
/// than `limit` bytes.
[[nodiscard]] std::string packedCells(const std::vector<std::string>& cells, std::size_t limit);

/// The cells that `packed` holds; nothing when they are not `count` texts that are printable (see
/// `isPrintable`), or when `packed` is anything else. Takes no more than a few times its memory.
[[nodiscard]] std::optional<std::vector<std::string>> unpackedCells(std::string_view packed,
                                                                    std::size_t count);

}  // namespace veltrace::cli
