// Descriptors of this process.
#pragma once

namespace veltrace::cli {

/// The number that the next descriptor gets; negative when there is none to be had, or when
/// descriptor 0 is not open.
[[nodiscard]] int lowestFreeDescriptor();

}  // namespace veltrace::cli
