// How much memory an operation holds at most.
#pragma once

#include <cstddef>
#include <functional>

namespace veltrace::bench {

/// The most bytes that `body` holds at one time beyond those held before it, in blocks of the heap,
/// as large as the allocator makes them, and in mapped ones. Stack is not counted. Runs once at a
/// time, on one thread.
[[nodiscard]] std::size_t peakHeapBytes(const std::function<void()>& body);

}  // namespace veltrace::bench
