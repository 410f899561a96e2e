// Large pages for large memory.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <sys/mman.h>

#include "block_checker.h"

namespace zephra {

/// The size of a large page on x86-64.
inline constexpr std::size_t kHugePage = std::size_t{2} << 20;

/// A block within the memory that was allocated for it and that is to be freed; null when there
/// was none.
struct PlacedBlock {
    void* memory = nullptr;
    void* block = nullptr;
};

/// Gets memory for a block of `size` bytes from `allocate`, which takes a number of bytes and gives
/// null when there is no memory. A large block begins on a large page, if there is room for that,
/// and the system is asked to back it by those: to get a million values page by page takes longer
/// than to fill them.
template <class Allocate>
[[nodiscard]] PlacedBlock placeOnHugePages(std::size_t size, const Allocate& allocate) noexcept {
    constexpr std::size_t kRoom = 2 * kHugePage;
    const bool isLarge = size >= kRoom && size <= std::numeric_limits<std::size_t>::max() - kRoom;
    if (kHasBlockChecker || !isLarge) {
        void* const memory = allocate(size);
        return {memory, memory};
    }
    const std::size_t advised = (size + kHugePage / 2) / kHugePage * kHugePage;
    void* memory = allocate(std::max(size, advised) + kHugePage);
    if (memory == nullptr) {
        memory = allocate(size);
        return {memory, memory};
    }
    const std::size_t beyond = reinterpret_cast<std::uintptr_t>(memory) % kHugePage;
    void* const block = static_cast<std::byte*>(memory) + (kHugePage - beyond) % kHugePage;
    static_cast<void>(madvise(block, advised, MADV_HUGEPAGE));  // no harm if refused
    return {memory, block};
}

}  // namespace zephra
