// Tells whether reading files leaves something behind in the process.
#pragma once

#include <cstddef>

namespace veltrace::cli {

/// Memory that may be in use beyond the start: 64 MiB.
inline constexpr std::size_t kMostGrowth = std::size_t{64} << 20;

/// Compares the process with what it was at the construction. Descriptor 0 is open all the while.
class Growth {
public:
    Growth();

    /// Whether more than `kMostGrowth` more memory is allocated, or a descriptor that was free no
    /// longer is. Memory of malloc and new counts, but for what is free for further allocations;
    /// blocks that are mapped do not: a reader that is left behind with its values keeps its
    /// descriptor, and all else of a call ends with it.
    /// Costs microseconds, so it can be asked after each file.
    [[nodiscard]] bool hasGrown() const;

private:
    std::size_t memoryInUse_;
    int lowestFree_;
};

}  // namespace veltrace::cli
