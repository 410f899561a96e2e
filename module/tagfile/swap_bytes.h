// The one place that changes byte order.
#pragma once

#include <cstddef>

namespace veltrace::module {

/// Reverses in place the bytes of each of `count` consecutive elements of `elementSize` bytes.
/// Does nothing when `swap` is false. Elements of one byte are unchanged.
void swapBytes(void* buffer, int elementSize, unsigned count, bool swap);

}  // namespace veltrace::module
