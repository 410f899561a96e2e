// Memory for many elements.
#pragma once

#include <cstddef>
#include <new>
#include <sys/mman.h>

namespace veltrace {

/// Allocates like std::allocator, but has the system back most of a large block by large pages: to
/// get a million values page by page takes longer than to read them.
template <class Element>
struct LargePageAllocator {
    using value_type = Element;

    [[nodiscard]] Element* allocate(std::size_t count) {
        const std::size_t size = count * sizeof(Element);
        if (!isLarge(size)) {
            return static_cast<Element*>(::operator new(size));
        }
        void* const memory = ::operator new(size, kAlignment);
        static_cast<void>(madvise(memory, size / kLargePage * kLargePage, MADV_HUGEPAGE));
        return static_cast<Element*>(memory);
    }
    void deallocate(Element* elements, std::size_t count) noexcept {
        if (isLarge(count * sizeof(Element))) {
            ::operator delete(elements, kAlignment);
        } else {
            ::operator delete(elements);
        }
    }
    friend bool operator==(const LargePageAllocator&, const LargePageAllocator&) = default;

private:
    // The size of a large page on x86-64.
    static constexpr std::size_t kLargePage = std::size_t{2} << 20;
    static constexpr std::align_val_t kAlignment{kLargePage};

    static bool isLarge(std::size_t size) { return size >= kLargePage; }
};

}  // namespace veltrace
