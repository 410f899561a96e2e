// Where the arrays of a call are.
#pragma once

#include <cstddef>

#include "block_checker.h"
#include "system_memory.h"

namespace zephra {

/// Memory for blocks that live until the end, in two kinds: small ones share chunks, because a
/// result may hold millions of scalars and short strings, and to ask the system for each, and to
/// give each back, would take most of the time of a call.
class ArrayMemory {
public:
    /// Larger blocks are better off on their own; so are all where a checker watches.
    static constexpr std::size_t kLargestSharing = kHasBlockChecker ? 0 : 1024;

    ArrayMemory() = default;
    ArrayMemory(const ArrayMemory&) = delete;
    ArrayMemory& operator=(const ArrayMemory&) = delete;
    ~ArrayMemory();

    /// A block of `size` bytes, all zero, aligned for any number or pointer. It lives as long as
    /// this object, unless `releaseAlone` frees it. Null when memory is exhausted.
    [[nodiscard]] void* allocate(std::size_t size) noexcept {
        if (size > kLargestSharing) {
            return allocateAlone(size);
        }
        size = (size + alignof(double) - 1) / alignof(double) * alignof(double);
        if (size > left_ && !addChunk()) {
            return nullptr;
        }
        std::byte* const block = free_;
        free_ += size;
        left_ -= size;
        return block;
    }

    /// Frees each block that is on its own and that `isUnused` says true of.
    template <class Predicate>
    void releaseAlone(const Predicate& isUnused) {
        for (Alone** link = &lastAlone_; *link != nullptr;) {
            Alone* const block = *link;
            if (isUnused(static_cast<void*>(block + 1))) {
                *link = block->previous;
                freeMemory(block, block->bytes);
            } else {
                link = &block->previous;
            }
        }
    }

    /// Whether `address`, which may be any, is in a chunk or begins a block on its own.
    [[nodiscard]] bool contains(const void* address) const;

private:
    // Each begins its memory, which has so many bytes.
    struct Chunk {
        Chunk* previous;
        std::size_t bytes;
    };
    struct Alone {
        Alone* previous;
        std::size_t bytes;
    };

    [[nodiscard]] bool addChunk() noexcept;
    [[nodiscard]] void* allocateAlone(std::size_t size) noexcept;

    Chunk* lastChunk_ = nullptr;
    Alone* lastAlone_ = nullptr;
    std::size_t chunkBytes_ = 4096;
    std::byte* free_ = nullptr;
    std::size_t left_ = 0;
};

}  // namespace zephra
