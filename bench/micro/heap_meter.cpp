// Defines the allocator's functions for the whole program, shared libraries included. All it adds
// to a call outside of `peakHeapBytes` is one test of a flag.
#include "heap_meter.h"

#include <algorithm>
#include <cstddef>
#include <malloc.h>

// The C library's own allocator, under names that nothing replaces.
extern "C" {
void* __libc_malloc(std::size_t size) noexcept;
void* __libc_calloc(std::size_t count, std::size_t size) noexcept;
void* __libc_realloc(void* block, std::size_t size) noexcept;
void* __libc_memalign(std::size_t alignment, std::size_t size) noexcept;
void __libc_free(void* block) noexcept;
}

namespace {

constinit bool isMetering = false;
// Below zero when more of the blocks from before are freed than new ones made.
constinit std::ptrdiff_t held = 0;
constinit std::ptrdiff_t mostHeld = 0;

void* added(void* block) {
    if (isMetering) {
        held += static_cast<std::ptrdiff_t>(malloc_usable_size(block));
        mostHeld = std::max(mostHeld, held);
    }
    return block;
}

void* removed(void* block) {
    if (isMetering) {
        held -= static_cast<std::ptrdiff_t>(malloc_usable_size(block));
    }
    return block;
}

}  // namespace

extern "C" {

void* malloc(std::size_t size) noexcept {
    return added(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size) noexcept {
    return added(__libc_calloc(count, size));
}

void* realloc(void* block, std::size_t size) noexcept {
    return added(__libc_realloc(removed(block), size));
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    return added(__libc_memalign(alignment, size));
}

void free(void* block) noexcept {
    __libc_free(removed(block));
}

}  // extern "C"

namespace veltrace::bench {

std::size_t peakHeapBytes(const std::function<void()>& body) {
    held = 0;
    mostHeld = 0;
    isMetering = true;
    body();
    isMetering = false;
    return static_cast<std::size_t>(mostHeld);
}

}  // namespace veltrace::bench
