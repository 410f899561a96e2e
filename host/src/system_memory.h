// Memory of the system.
#pragma once

#include <cstddef>

namespace zephra {

/// The size of a large page on x86-64.
inline constexpr std::size_t kLargePage = std::size_t{2} << 20;

/// A block of `size` bytes, aligned for any number or pointer; null when memory is exhausted. A
/// block that fills a large page is mapped, in whole large pages, which the system is asked to back
/// it by: to get a million values page by page takes longer than to fill them.
[[nodiscard]] void* allocateMemory(std::size_t size) noexcept;

/// The same, all zero.
[[nodiscard]] void* allocateZeros(std::size_t size) noexcept;

/// Frees a block of `size` bytes.
void freeMemory(void* block, std::size_t size) noexcept;

}  // namespace zephra
