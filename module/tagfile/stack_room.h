// Keeps deep nesting inside the thread's stack.
#pragma once

#include <cstdint>

namespace veltrace::module {

/// Thrown when a sub-directory would need stack that is kept back. Neither of the two error
/// classes, so the entry point reports it as it reports exhausted memory.
struct StackExhausted {};

/// The stack of the thread that first asks, of which a few kilobytes below that caller are taken to
/// be there. Used by one thread only.
class StackRoom {
public:
    /// Returns while there is stack left for one more level of nesting; throws `StackExhausted`
    /// otherwise. What is kept back, a quarter of the stack up to 256 KiB, serves unwinding and
    /// the host's functions; output, copies and destruction of what was read go as deep as the
    /// read did, with smaller frames, and start from the same place. Of a stack that is larger than
    /// a quarter of the memory that the process may have, only that much counts.
    void require();

private:
    // To find the limits the system may read a file, so only files that nest deep pay, and once.
    void measure();

    std::uintptr_t first_ = 0;   // address of the first caller's frame
    std::uintptr_t lowest_ = 0;  // address that no frame of a read may go below; 0: not measured
};

}  // namespace veltrace::module
