// Large pages for large memory.
#pragma once

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
/// null when there is no memory. A large block begins on a large page, and the system is asked to
/// back it by those: to get a million values page by page takes longer than to fill them.
template <class Allocate>
[[nodiscard]] PlacedBlock placeOnHugePages(std::size_t size, const Allocate& allocate) noexcept {
    constexpr std::size_t kRoom = 2 * kHugePage;
    if (kHasBlockChecker || size < kHugePage ||
        size > std::numeric_limits<std::size_t>::max() - kRoom) {
        void* const memory = allocate(size);
        return {memory, memory};
    }
    void* const memory = allocate(size + kRoom);
    if (memory == nullptr) {
        return {};
    }
    const std::size_t beyond = reinterpret_cast<std::uintptr_t>(memory) % kHugePage;
    void* const block = static_cast<std::byte*>(memory) + (kHugePage - beyond) % kHugePage;
    const std::size_t pages = (size + kHugePage / 2) / kHugePage;
    static_cast<void>(madvise(block, pages * kHugePage, MADV_HUGEPAGE));  // no harm if refused
    return {memory, block};
}

}  // namespace zephra
