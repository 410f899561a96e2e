// Defines the allocator's functions for the whole program, shared libraries included. All it adds
// to a call outside of `peakHeapBytes` is one test of a flag.
#include "heap_meter.h"

#include <algorithm>
#include <cstddef>
#include <malloc.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

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

void add(std::size_t size) {
    if (isMetering) {
        held += static_cast<std::ptrdiff_t>(size);
        mostHeld = std::max(mostHeld, held);
    }
}

void remove(std::size_t size) {
    if (isMetering) {
        held -= static_cast<std::ptrdiff_t>(size);
    }
}

void* added(void* block) {
    add(malloc_usable_size(block));
    return block;
}

void* removed(void* block) {
    remove(malloc_usable_size(block));
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

// The C library's own calls of these do not come here.

void* mmap(void* place, std::size_t size, int protection, int flags, int file,
           off_t offset) noexcept {
    const long address = syscall(SYS_mmap, place, size, protection, flags, file, offset);
    if (address != -1) {
        add(size);
    }
    return reinterpret_cast<void*>(address);
}

int munmap(void* block, std::size_t size) noexcept {
    remove(size);
    return static_cast<int>(syscall(SYS_munmap, block, size));
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
