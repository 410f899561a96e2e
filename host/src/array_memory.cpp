#include "array_memory.h"

#include <algorithm>
#include <cstdlib>
#include <new>

#include "huge_pages.h"

namespace zephra {

namespace {

// Few chunks for many arrays, little waste for few.
constexpr std::size_t kLargestChunk = std::size_t{8} << 20;

}  // namespace

struct ArrayMemory::Chunk {
    Chunk* previous;
};

ArrayMemory::~ArrayMemory() {
    while (last_ != nullptr) {
        Chunk* const chunk = last_;
        last_ = chunk->previous;
        std::free(chunk);
    }
}

bool ArrayMemory::addChunk() noexcept {
    void* const memory = std::calloc(1, chunkBytes_);
    if (memory == nullptr) {
        return false;
    }
    adviseHugePages(memory, chunkBytes_);
    last_ = new (memory) Chunk{last_};
    free_ = static_cast<std::byte*>(memory) + sizeof(Chunk);
    left_ = chunkBytes_ - sizeof(Chunk);
    chunkBytes_ = std::min(2 * chunkBytes_, kLargestChunk);
    return true;
}

}  // namespace zephra
