// Tells whether memory ran out.
#pragma once

#include <atomic>
#include <new>

namespace veltrace::cli {

/// While one lives, notes that `operator new` found no memory, which still ends in std::bad_alloc.
/// An error of the module does not tell that from other causes. Failures of malloc are not noted.
/// There is one watch at a time in a process.
class MemoryWatch {
public:
    MemoryWatch();
    MemoryWatch(const MemoryWatch&) = delete;
    MemoryWatch& operator=(const MemoryWatch&) = delete;
    ~MemoryWatch();

    /// Whether memory ran out since the construction or the last `reset`.
    [[nodiscard]] bool ranOut() const { return ranOut_; }
    void reset() { ranOut_ = false; }

private:
    std::atomic<bool> ranOut_ = false;
    std::new_handler previous_ = nullptr;
};

}  // namespace veltrace::cli
