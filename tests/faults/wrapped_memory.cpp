// Every function by which module and host get memory, refused on demand. Those of C++ are replaced,
// which the language provides for; those of C are wrapped by the linker, for calls from the objects
// of this program alone.
#include <cstddef>
#include <cstdlib>
#include <new>

#include "faults/injection.h"

extern "C" {

void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void __real_free(void* block);

void* __wrap_malloc(std::size_t size);
void* __wrap_malloc(std::size_t size) {
    using namespace veltrace::test::detail;
    if (isRefused(veltrace::test::Request::memory)) {
        return nullptr;
    }
    void* const block = __real_malloc(size);
    noteBlock(block);
    return block;
}

void* __wrap_calloc(std::size_t count, std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size) {
    using namespace veltrace::test::detail;
    if (isRefused(veltrace::test::Request::memory)) {
        return nullptr;
    }
    void* const block = __real_calloc(count, size);
    noteBlock(block);
    return block;
}

void __wrap_free(void* block);
void __wrap_free(void* block) {
    veltrace::test::detail::noteFreed(block);
    __real_free(block);
}

}  // extern "C"

namespace {

constexpr std::size_t kUsual = __STDCPP_DEFAULT_NEW_ALIGNMENT__;

void* takeOrNull(std::size_t size, std::size_t alignment) noexcept {
    using namespace veltrace::test::detail;
    if (isRefused(veltrace::test::Request::memory)) {
        return nullptr;
    }
    const std::size_t rounded = (size + alignment - 1) / alignment * alignment;
    void* const block = alignment <= kUsual ? __real_malloc(size != 0 ? size : 1)
                                            : std::aligned_alloc(alignment, rounded);
    noteBlock(block);
    return block;
}

void* take(std::size_t size, std::size_t alignment = kUsual) {
    void* const block = takeOrNull(size, alignment);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void give(void* block) noexcept {
    veltrace::test::detail::noteFreed(block);
    __real_free(block);
}

std::size_t number(std::align_val_t alignment) {
    return static_cast<std::size_t>(alignment);
}

}  // namespace

using Size = std::size_t;
using Align = std::align_val_t;
using NoThrow = std::nothrow_t;

void* operator new(Size size) {
    return take(size);
}
void* operator new[](Size size) {
    return take(size);
}
void* operator new(Size size, Align align) {
    return take(size, number(align));
}
void* operator new[](Size size, Align align) {
    return take(size, number(align));
}
void* operator new(Size size, const NoThrow&) noexcept {
    return takeOrNull(size, kUsual);
}
void* operator new[](Size size, const NoThrow&) noexcept {
    return takeOrNull(size, kUsual);
}
void* operator new(Size size, Align align, const NoThrow&) noexcept {
    return takeOrNull(size, number(align));
}
void* operator new[](Size size, Align align, const NoThrow&) noexcept {
    return takeOrNull(size, number(align));
}

void operator delete(void* block) noexcept {
    give(block);
}
void operator delete[](void* block) noexcept {
    give(block);
}
void operator delete(void* block, Size) noexcept {
    give(block);
}
void operator delete[](void* block, Size) noexcept {
    give(block);
}
void operator delete(void* block, Align) noexcept {
    give(block);
}
void operator delete[](void* block, Align) noexcept {
    give(block);
}
void operator delete(void* block, Size, Align) noexcept {
    give(block);
}
void operator delete[](void* block, Size, Align) noexcept {
    give(block);
}
void operator delete(void* block, const NoThrow&) noexcept {
    give(block);
}
void operator delete[](void* block, const NoThrow&) noexcept {
    give(block);
}
void operator delete(void* block, Align, const NoThrow&) noexcept {
    give(block);
}
void operator delete[](void* block, Align, const NoThrow&) noexcept {
    give(block);
}
