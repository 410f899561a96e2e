// Large pages for large memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <sys/mman.h>

namespace zephra {

/// The size of a large page on x86-64.
inline constexpr std::size_t kHugePage = std::size_t{2} << 20;

/// Asks the system to back what it can of fresh `memory` by large pages: to get a million values
/// page by page takes longer than to fill them. No harm comes of a refusal.
inline void adviseHugePages(void* memory, std::size_t size) {
    if (size < 2 * kHugePage) {
        return;
    }
    const auto begin = reinterpret_cast<std::uintptr_t>(memory);
    const std::uintptr_t first = (begin + kHugePage - 1) / kHugePage * kHugePage;
    const std::uintptr_t last = (begin + size) / kHugePage * kHugePage;
    static_cast<void>(
        madvise(static_cast<char*>(memory) + (first - begin), last - first, MADV_HUGEPAGE));
}

}  // namespace zephra
