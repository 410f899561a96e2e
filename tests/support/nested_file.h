// Deep files, and threads to read them on.
#pragma once

#include <cstddef>
#include <functional>

#include "support/bytes.h"

namespace veltrace::test {

/// A classic little-endian TIFF file whose image directory has an Exif directory, which has an Exif
/// directory, `depth` of them. The innermost holds MeteringMode 5 (tag 37383).
[[nodiscard]] Bytes nestedExif(std::size_t depth);

/// A file whose one directory is its own Exif directory: it nests without end.
[[nodiscard]] Bytes endlessExif();

/// Runs `body` on a stack in the heap, as fibers do, of which the system knows nothing.
void runOnForeignStack(std::size_t stackBytes, const std::function<void()>& body);

/// Runs `body` on a thread with a stack of this size and waits for it.
void runOnStack(std::size_t stackBytes, const std::function<void()>& body);

}  // namespace veltrace::test
