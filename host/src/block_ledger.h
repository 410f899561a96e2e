// The blocks that a module has allocated.
#pragma once

#include <cstddef>
#include <vector>

namespace zephra {

/// Owns blocks of memory. It adds no header to them, so that memory checkers see both ends of each
/// block.
class BlockLedger {
public:
    BlockLedger() = default;
    BlockLedger(const BlockLedger&) = delete;
    BlockLedger& operator=(const BlockLedger&) = delete;
    ~BlockLedger();

    /// A new block of `size` bytes; null when memory is exhausted.
    [[nodiscard]] void* allocate(std::size_t size) noexcept;
    /// Frees a block; false when the ledger has no such block. Compares addresses only, so `block`
    /// may be any pointer.
    [[nodiscard]] bool release(void* block);

    [[nodiscard]] std::size_t count() const { return blocks_.size(); }
    /// The sum of their sizes as requested.
    [[nodiscard]] std::size_t bytes() const;

private:
    struct Block {
        void* memory;
        std::size_t size;
    };

    std::vector<Block> blocks_;  // the newest last
};

}  // namespace zephra
