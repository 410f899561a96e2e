#include "block_ledger.h"

#include <cstdlib>
#include <new>

namespace zephra {

BlockLedger::~BlockLedger() {
    for (std::size_t i = 0; i < newCount_; ++i) {
        std::free(new_[i].place.memory);
    }
    for (const auto& [address, block] : old_) {
        std::free(block.place.memory);
    }
}

void* BlockLedger::allocate(std::size_t size) noexcept {
    if (newCount_ == new_.size() && !moveOldestAway()) {
        return nullptr;
    }
    const PlacedBlock place =
        placeOnHugePages(size, [](std::size_t bytes) { return std::malloc(bytes); });
    if (place.block != nullptr) {
        new_[newCount_++] = {place, size};
    }
    return place.block;
}

bool BlockLedger::moveOldestAway() noexcept {
    try {
        old_.emplace(new_.front().place.block, new_.front());
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
        if (new_[i - 1].place.block == block) {
            std::free(new_[i - 1].place.memory);
            drop(i - 1);
            return true;
        }
    }
    const auto found = old_.find(block);
    if (found == old_.end()) {
        return false;
    }
    std::free(found->second.place.memory);
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
