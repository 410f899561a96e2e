// Memory for many elements.
#pragma once

#include <cstddef>
#include <memory>

namespace veltrace {

/// The size of a large page on x86-64.
inline constexpr std::size_t kLargePage = std::size_t{2} << 20;

/// Maps memory for at least `size` bytes, in whole large pages, which the system is asked to back
/// it by. Throws std::bad_alloc.
[[nodiscard]] void* mapLargePages(std::size_t size);

/// Gives back what was mapped for `size` bytes.
void unmapLargePages(void* memory, std::size_t size) noexcept;

/// Allocates like std::allocator, but maps what fills a large page: to get a million values page by
/// page takes longer than to read them.
template <class Element>
struct LargePageAllocator {
    using value_type = Element;

    [[nodiscard]] Element* allocate(std::size_t count) {
        return isLarge(count) ? static_cast<Element*>(mapLargePages(count * sizeof(Element)))
                              : std::allocator<Element>().allocate(count);
    }
    void deallocate(Element* elements, std::size_t count) noexcept {
        if (isLarge(count)) {
            unmapLargePages(elements, count * sizeof(Element));
        } else {
            std::allocator<Element>().deallocate(elements, count);
        }
    }
    friend bool operator==(const LargePageAllocator&, const LargePageAllocator&) = default;

private:
    [[nodiscard]] static bool isLarge(std::size_t count) {
        return count >= kLargePage / sizeof(Element);
    }
};

}  // namespace veltrace
