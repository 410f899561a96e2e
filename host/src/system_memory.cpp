#include "system_memory.h"

#include <cstdint>
#include <cstdlib>
#include <sys/mman.h>

#include "block_checker.h"

namespace zephra {

namespace {

bool isMapped(std::size_t size) {
    return !kHasBlockChecker && size >= kLargePage && size <= PTRDIFF_MAX;
}

std::size_t mappedBytes(std::size_t size) {
    return (size + kLargePage - 1) / kLargePage * kLargePage;
}

/// Zeros. Mapped rather than taken from the heap, whose pages stay small once they have been in
/// use. Linux begins such a block on a large page from 6.7 on; before, one page of it may be small
/// ones.
void* map(std::size_t size) noexcept {
    const std::size_t bytes = mappedBytes(size);
    void* const block =
        mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (block == MAP_FAILED) {
        return nullptr;
    }
    static_cast<void>(madvise(block, bytes, MADV_HUGEPAGE));  // no harm if refused
    return block;
}

}  // namespace

void* allocateMemory(std::size_t size) noexcept {
    return isMapped(size) ? map(size) : std::malloc(size);
}

void* allocateZeros(std::size_t size) noexcept {
    return isMapped(size) ? map(size) : std::calloc(1, size);
}

void freeMemory(void* block, std::size_t size) noexcept {
    if (isMapped(size)) {
        munmap(block, mappedBytes(size));
    } else {
        std::free(block);
    }
}

}  // namespace zephra
