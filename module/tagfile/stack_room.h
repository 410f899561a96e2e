// Limits nesting to what the thread's stack allows.
#pragma once

#include <cstdint>

namespace veltrace::module {

/// Thrown when a sub-directory would need the reserve of the stack. Neither of the two error
/// classes, so the entry point reports it like exhausted memory.
struct StackExhausted {};

/// The stack of the first caller's thread, assumed to have a few kilobytes below that caller. Used
/// by one thread only.
class StackRoom {
public:
    /// Returns if there is stack left for one more level of nesting; throws `StackExhausted`
    /// otherwise. The reserve, a quarter of the stack and at most 256 KiB, is for unwinding and the
    /// host's functions; output, copies and destruction of what was read go as deep as the read
    /// did, with smaller frames, and start at the same level. The stack counts as at most a quarter
    /// of the process's memory limit.
    void require();

private:
    // The system may read a file to find the bounds, so they are measured once, and only for files
    // that nest deep.
    void measure();

    std::uintptr_t first_ = 0;   // address of the first caller's frame
    std::uintptr_t lowest_ = 0;  // lowest address that a frame of a read may have; 0: not measured
};

}  // namespace veltrace::module
