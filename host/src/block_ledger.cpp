#include "block_ledger.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace zephra {

BlockLedger::~BlockLedger() {
    for (const Block& block : blocks_) {
        std::free(block.memory);
    }
}

void* BlockLedger::allocate(std::size_t size) noexcept {
    void* const memory = std::malloc(size);
    if (memory == nullptr) {
        return nullptr;
    }
    try {
        blocks_.push_back({memory, size});
    } catch (const std::bad_alloc&) {
        std::free(memory);
        return nullptr;
    }
    return memory;
}

bool BlockLedger::release(void* block) {
    // Most modules free the newest block first.
    const auto found = std::find_if(blocks_.rbegin(), blocks_.rend(),
                                    [block](const Block& own) { return own.memory == block; });
    if (found == blocks_.rend()) {
        return false;
    }
    std::free(block);
    blocks_.erase(std::next(found).base());
    return true;
}

std::size_t BlockLedger::bytes() const {
    std::size_t sum = 0;
    for (const Block& block : blocks_) {
        sum += block.size;
    }
    return sum;
}

}  // namespace zephra
