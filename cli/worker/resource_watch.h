// What reading files leaves behind in the process, and whether memory ran out.
#pragma once

#include <atomic>
#include <cstddef>
#include <new>

namespace veltrace::cli {

/// The number that the next descriptor gets; negative when none is free, or when descriptor 0 is
/// not open.
[[nodiscard]] int lowestFreeDescriptor();

/// Keeps memory that was freed for the next files, up to 256 MiB: to get the pages of a million
/// values from the system again takes several times as long as to read them. Blocks are joined as
/// they are freed, instead of all at once later, which suits tags that are freed in their order.
void keepFreedMemory();

/// Memory that may be in use beyond the start: 64 MiB.
inline constexpr std::size_t kMaxGrowth = std::size_t{64} << 20;

/// Compares the process with its state at the construction. Descriptor 0 stays open all the while.
class Growth {
public:
    Growth();

    /// Whether more than `kMaxGrowth` more memory is allocated, or a descriptor that was free no
    /// longer is. Memory of malloc and new counts, except what is free for further allocations.
    /// Mapped blocks do not count: a reader that is left behind with its values keeps its
    /// descriptor, and all else of a call ends with it.
    /// Costs microseconds, so it can be asked after each file.
    [[nodiscard]] bool hasGrown() const;

private:
    std::size_t memoryInUse_;
    int lowestFree_;
};

/// While one lives, notes that `operator new` found no memory, which still ends in std::bad_alloc:
/// an error of the module does not show its cause. Failures of malloc are not noted. A process has
/// one watch at a time.
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
