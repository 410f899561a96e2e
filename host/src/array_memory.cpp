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

void* zeros(std::size_t size) {
    return std::calloc(1, size);
}

template <class Block>
void freeAll(Block* last) {
    while (last != nullptr) {
        Block* const block = last;
        last = block->previous;
        std::free(block->memory);
    }
}

}  // namespace

ArrayMemory::~ArrayMemory() {
    freeAll(lastChunk_);
    freeAll(lastAlone_);
}

bool ArrayMemory::addChunk() noexcept {
    const PlacedBlock place = placeOnHugePages(chunkBytes_, zeros);
    if (place.block == nullptr) {
        return false;
    }
    lastChunk_ = new (place.block)
        Chunk{.previous = lastChunk_, .memory = place.memory, .bytes = chunkBytes_};
    free_ = static_cast<std::byte*>(place.block) + sizeof(Chunk);
    left_ = chunkBytes_ - sizeof(Chunk);
    chunkBytes_ = std::min(4 * chunkBytes_, kLargestChunk);
    return true;
}

void* ArrayMemory::allocateAlone(std::size_t size) noexcept {
    if (size > std::numeric_limits<std::size_t>::max() - sizeof(Alone)) {
        return nullptr;
    }
    const PlacedBlock place = placeOnHugePages(sizeof(Alone) + size, zeros);
    if (place.block == nullptr) {
        return nullptr;
    }
    lastAlone_ = new (place.block) Alone{.previous = lastAlone_, .memory = place.memory};
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
