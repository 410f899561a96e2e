// The blocks that a module holds.
#pragma once

#include <array>
#include <cstddef>
#include <unordered_map>

namespace zephra {

/// Owns blocks of memory, without a header in them, so that memory checkers see both ends of each
/// one. Most modules free a block soon after they asked for it, so the newest are looked at first.
class BlockLedger {
public:
    BlockLedger() = default;
    BlockLedger(const BlockLedger&) = delete;
    BlockLedger& operator=(const BlockLedger&) = delete;
    ~BlockLedger();

    /// A new block of `size` bytes; null when memory is exhausted.
    [[nodiscard]] void* allocate(std::size_t size) noexcept;
    /// Frees a block; false when `block` is none. Compares addresses only, so it may be any
    /// pointer.
    [[nodiscard]] bool release(void* block);

    [[nodiscard]] std::size_t count() const { return newCount_ + old_.size(); }
    /// Their sizes as requested, added up.
    [[nodiscard]] std::size_t bytes() const;

private:
    struct Block {
        void* memory;
        std::size_t size;
    };

    [[nodiscard]] bool moveOldestAway() noexcept;
    void drop(std::size_t index);

    std::array<Block, 8> new_{};
    std::size_t newCount_ = 0;
    std::unordered_map<void*, Block> old_;  // by their addresses
};

}  // namespace zephra
