#include "block_ledger.h"

#include <cstdlib>
#include <new>

#include "huge_pages.h"

namespace zephra {

BlockLedger::~BlockLedger() {
    for (std::size_t i = 0; i < newCount_; ++i) {
        std::free(new_[i].memory);
    }
    for (const auto& [memory, size] : old_) {
        std::free(memory);
    }
}

void* BlockLedger::allocate(std::size_t size) noexcept {
    if (newCount_ == new_.size() && !moveOldestAway()) {
        return nullptr;
    }
    void* const memory = std::malloc(size);
    if (memory != nullptr) {
        adviseHugePages(memory, size);
        new_[newCount_++] = {memory, size};
    }
    return memory;
}

bool BlockLedger::moveOldestAway() noexcept {
    try {
        old_.emplace(new_.front().memory, new_.front().size);
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

bool BlockLedger::release(void* memory) {
    for (std::size_t i = newCount_; i > 0; --i) {
        if (new_[i - 1].memory == memory) {
            drop(i - 1);
            std::free(memory);
            return true;
        }
    }
    if (old_.erase(memory) == 0) {
        return false;
    }
    std::free(memory);
    return true;
}

std::size_t BlockLedger::bytes() const {
    std::size_t sum = 0;
    for (std::size_t i = 0; i < newCount_; ++i) {
        sum += new_[i].size;
    }
    for (const auto& [memory, size] : old_) {
        sum += size;
    }
    return sum;
}

}  // namespace zephra
