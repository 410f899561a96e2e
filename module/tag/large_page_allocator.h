// Memory for many elements.
#pragma once

#include <cstddef>
#include <memory>

namespace veltrace::module {

/// The size of a large page on x86-64.
inline constexpr std::size_t kLargePage = std::size_t{2} << 20;

/// Maps memory for at least `size` bytes, in whole large pages, which the system is asked to back
/// it by. Throws std::bad_alloc, or what the new-handler throws.
[[nodiscard]] void* mapLargePages(std::size_t size);

/// Gives back what was mapped for `size` bytes.
void unmapLargePages(void* memory, std::size_t size) noexcept;

// AddressSanitizer watches the ends of each block of the heap, and what is freed.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kIsHeapWatched = true;
#elif defined(__has_feature)
inline constexpr bool kIsHeapWatched = __has_feature(address_sanitizer);
#else
inline constexpr bool kIsHeapWatched = false;
#endif

/// Allocates like std::allocator, but maps what fills a large page: to get a million values page by
/// page takes longer than to read them. Where a checker watches the heap, everything stays there.
template <class Element>
struct LargePageAllocator {
    using value_type = Element;

    LargePageAllocator() = default;
    template <class Other>
    LargePageAllocator(const LargePageAllocator<Other>& /*other*/) noexcept {}

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
        return !kIsHeapWatched && count >= kLargePage / sizeof(Element);
    }
};

}  // namespace veltrace::module
