// Waits for descriptors.
#pragma once

#include <chrono>
#include <poll.h>
#include <vector>

namespace veltrace::cli {

/// Waits until one of `set` is ready, the time has come, or a signal arrives. Entries of descriptor
/// -1 are never ready.
void waitFor(std::vector<pollfd>& set, std::chrono::steady_clock::time_point until);

}  // namespace veltrace::cli
