// What holds for every file, checked.
#pragma once

#include "support/bytes.h"
#include "sweep/bounded_read.h"

namespace veltrace::fuzz {

using test::Bytes;

/// The module's reading of a file with this content. The file has the same name and modification
/// time in every call. A strict host grants 64 blocks of at most 128 KiB: loops end, and whatever a
/// file of a few kilobytes can make the module return within these blocks fits.
[[nodiscard]] test::BoundedRead readImage(const Bytes& content);

/// Reports an outcome of `readImage` that is not a stated one.
void checkStated(const test::BoundedRead& read);

/// Reports when the dump of what the reader holds after reading this content does not end, or the
/// reading says anything but what `read`, the module's own, says.
void checkDump(const Bytes& content, const test::BoundedRead& read);

/// All of the above. Only every eighth content is dumped, the same ones in every run.
void checkImage(const Bytes& content);

}  // namespace veltrace::fuzz
