#include "array_memory.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <limits>
#include <new>

#include "huge_pages.h"

namespace zephra {

namespace {

// Few chunks for many arrays, little waste for few.
constexpr std::size_t kLargestChunk = std::size_t{8} << 20;

template <class Block>
void freeAll(Block* last) {
    while (last != nullptr) {
        Block* const block = last;
        last = block->previous;
        std::free(block);
    }
}

}  // namespace

ArrayMemory::~ArrayMemory() {
    freeAll(lastChunk_);
    freeAll(lastAlone_);
}

bool ArrayMemory::addChunk() noexcept {
    void* const memory = std::calloc(1, chunkBytes_);
    if (memory == nullptr) {
        return false;
    }
    adviseHugePages(memory, chunkBytes_);
    lastChunk_ = new (memory) Chunk{.previous = lastChunk_, .bytes = chunkBytes_};
    free_ = static_cast<std::byte*>(memory) + sizeof(Chunk);
    left_ = chunkBytes_ - sizeof(Chunk);
    chunkBytes_ = std::min(2 * chunkBytes_, kLargestChunk);
    return true;
}

void* ArrayMemory::allocateAlone(std::size_t size) noexcept {
    if (size > std::numeric_limits<std::size_t>::max() - sizeof(Alone)) {
        return nullptr;
    }
    void* const memory = std::calloc(1, sizeof(Alone) + size);
    if (memory == nullptr) {
        return nullptr;
    }
    adviseHugePages(memory, sizeof(Alone) + size);
    lastAlone_ = new (memory) Alone{lastAlone_};
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
