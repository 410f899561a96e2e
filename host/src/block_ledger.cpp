#include "block_ledger.h"

#include <new>

#include "system_memory.h"

namespace zephra {

BlockLedger::~BlockLedger() {
    for (std::size_t i = 0; i < newCount_; ++i) {
        freeMemory(new_[i].memory, new_[i].size);
    }
    for (const auto& [address, block] : old_) {
        freeMemory(block.memory, block.size);
    }
}

void* BlockLedger::allocate(std::size_t size) noexcept {
    if (newCount_ == new_.size() && !moveOldestAway()) {
        return nullptr;
    }
    void* const memory = allocateMemory(size);
    if (memory != nullptr) {
        new_[newCount_++] = {memory, size};
    }
    return memory;
}

bool BlockLedger::moveOldestAway() noexcept {
    try {
        old_.emplace(new_.front().memory, new_.front());
    } catch (const std::bad_alloc&) {
        return false;
    }
    drop(0);
    return true;
}

/// Takes an entry out of the new ones.
void BlockLedger::drop(std::size_t index) {
    for (std::size_t i = index + 1; i < newCount_; ++i) {
        new_[i - 1] = new_[i];
    }
    --newCount_;
}

bool BlockLedger::release(void* block) {
    for (std::size_t i = newCount_; i > 0; --i) {
        if (new_[i - 1].memory == block) {
            freeMemory(block, new_[i - 1].size);
            drop(i - 1);
            return true;
        }
    }
    const auto found = old_.find(block);
    if (found == old_.end()) {
        return false;
    }
    freeMemory(block, found->second.size);
    old_.erase(found);
    return true;
}

std::size_t BlockLedger::bytes() const {
    std::size_t sum = 0;
    for (std::size_t i = 0; i < newCount_; ++i) {
        sum += new_[i].size;
    }
    for (const auto& [address, block] : old_) {
        sum += block.size;
    }
    return sum;
}

}  // namespace zephra
