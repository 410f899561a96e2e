#include "tag/large_page_allocator.h"

#include <new>
#include <sys/mman.h>

namespace veltrace::module {

namespace {

std::size_t inLargePages(std::size_t size) {
    return (size + kLargePage - 1) / kLargePage * kLargePage;
}

void* map(std::size_t bytes) {
    return mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
}

}  // namespace

// Mapped rather than taken from the heap, whose pages stay small once they have been in use. Linux
// begins such a block on a large page from 6.7 on; before, one page of it may be small ones.
void* mapLargePages(std::size_t size) {
    const std::size_t bytes = inLargePages(size);
    void* memory = map(bytes);
    while (memory == MAP_FAILED) {
        // As operator new does.
        const std::new_handler handler = std::get_new_handler();
        if (handler == nullptr) {
            throw std::bad_alloc();
        }
        handler();
        memory = map(bytes);
    }
    static_cast<void>(madvise(memory, bytes, MADV_HUGEPAGE));  // no harm if refused
    return memory;
}

void unmapLargePages(void* memory, std::size_t size) noexcept {
    munmap(memory, inLargePages(size));
}

}  // namespace veltrace::module
