#include "array_memory.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <new>

namespace zephra {

namespace {

// Few chunks for many arrays, little waste for few.
constexpr std::size_t kLargestChunk = std::size_t{8} << 20;

template <class Block>
void freeAll(Block* last) {
    while (last != nullptr) {
        Block* const block = last;
        last = block->previous;
        freeMemory(block, block->bytes);
    }
}

}  // namespace

ArrayMemory::~ArrayMemory() {
    freeAll(lastChunk_);
    freeAll(lastAlone_);
}

bool ArrayMemory::addChunk() noexcept {
    void* const memory = allocateZeros(chunkBytes_);
    if (memory == nullptr) {
        return false;
    }
    lastChunk_ = new (memory) Chunk{.previous = lastChunk_, .bytes = chunkBytes_};
    free_ = static_cast<std::byte*>(memory) + sizeof(Chunk);
    left_ = chunkBytes_ - sizeof(Chunk);
    chunkBytes_ = std::min(4 * chunkBytes_, kLargestChunk);
    return true;
}

void* ArrayMemory::allocateAlone(std::size_t size) noexcept {
    if (size > std::numeric_limits<std::size_t>::max() - sizeof(Alone)) {
        return nullptr;
    }
    const std::size_t bytes = sizeof(Alone) + size;
    void* const memory = allocateZeros(bytes);
    if (memory == nullptr) {
        return nullptr;
    }
    lastAlone_ = new (memory) Alone{.previous = lastAlone_, .bytes = bytes};
    return lastAlone_ + 1;
}

bool ArrayMemory::contains(const void* address) const {
    for (const Chunk* chunk = lastChunk_; chunk != nullptr; chunk = chunk->previous) {
        const auto* const begin = reinterpret_cast<const std::byte*>(chunk);
        if (std::greater_equal<>()(address, static_cast<const void*>(begin)) &&
            std::less<>()(address, static_cast<const void*>(begin + chunk->bytes))) {
            return true;
        }
    }
    for (const Alone* block = lastAlone_; block != nullptr; block = block->previous) {
        if (address == block + 1) {
            return true;
        }
    }
    return false;
}

}  // namespace zephra
