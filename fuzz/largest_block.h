// How much memory a piece of work asks for at once.
#pragma once

#include <cstddef>

namespace veltrace::fuzz {

/// Begins to watch. Only one piece of work is watched at a time.
void watchBlocks();

/// Bytes of the largest block that was granted since `watchBlocks`. 0 without AddressSanitizer,
/// which is what tells.
[[nodiscard]] std::size_t largestBlock();

}  // namespace veltrace::fuzz
