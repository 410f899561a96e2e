// The one place that knows how byte order is changed.
#pragma once

#include <cstddef>

namespace veltrace::module {

/// Reverses in place the bytes of each of `count` consecutive elements of `elementSize` bytes.
/// Does nothing when `swap` is false. An element of one byte stays as it is.
void swapBytes(void* buffer, int elementSize, unsigned count, bool swap);

}  // namespace veltrace::module
