// Values of every data type.
#pragma once

#include <optional>

#include "grid/grid_file.h"

namespace veltrace::test {

/// Bytes of one element; 0 for a type that does not exist.
[[nodiscard]] std::size_t elementSizeOf(std::uint16_t type);

/// An entry with `count` elements out of a few that are typical or extreme for its type; which they
/// are depends on the tag and on `salt`. A type that does not exist has a value of no meaning.
[[nodiscard]] GridEntry variedEntry(std::uint16_t tag, std::uint16_t type, std::uint32_t count,
                                    Order order, std::size_t salt);

/// An entry whose elements are all `number`; none if the type cannot hold it.
[[nodiscard]] std::optional<GridEntry> numberEntry(std::uint16_t tag, std::uint16_t type,
                                                   std::uint32_t count, Order order, double number);

}  // namespace veltrace::test
