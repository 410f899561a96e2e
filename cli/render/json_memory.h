// Memory for RapidJSON.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>

namespace veltrace::cli {

/// An allocator for RapidJSON's stacks, which do not check the result of an allocation: this one
/// throws std::bad_alloc. The names are RapidJSON's.
struct JsonMemory {
    static constexpr bool kNeedFree = true;

    // NOLINTBEGIN(readability-identifier-naming, cppcoreguidelines-no-malloc)
    static void* Malloc(std::size_t size) { return Realloc(nullptr, 0, size); }

    static void* Realloc(void* block, std::size_t /*oldSize*/, std::size_t size) {
        if (size == 0) {
            std::free(block);
            return nullptr;
        }
        void* const grown = std::realloc(block, size);
        if (grown == nullptr) {
            throw std::bad_alloc();
        }
        return grown;
    }

    static void Free(void* block) { std::free(block); }
    // NOLINTEND(readability-identifier-naming, cppcoreguidelines-no-malloc)
};

}  // namespace veltrace::cli
