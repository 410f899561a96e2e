// The blocks of a call, of which there may be many, freed in any order.
#include "block_ledger.h"

#include <cstddef>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

#include "run.h"

namespace zephra {
namespace {

using testing::IsEmpty;

/// The index of the block that is freed as the `turn`th of `count`.
using FreeingOrder = std::size_t (*)(std::size_t turn, std::size_t count);

constexpr FreeingOrder kFreeingOrders[] = {
    [](std::size_t turn, std::size_t /*count*/) { return turn; },
    [](std::size_t turn, std::size_t count) { return count - 1 - turn; },
    // 37 has no factor in common with any count here.
    [](std::size_t turn, std::size_t count) { return turn * 37 % count; },
};

void expectFreedOneByOne(std::size_t count, FreeingOrder order) {
    BlockLedger ledger;
    std::vector<void*> blocks;
    std::size_t bytes = 0;
    for (std::size_t size = 1; size <= count; ++size) {
        blocks.push_back(ledger.allocate(size));
        ASSERT_NE(blocks.back(), nullptr);
        bytes += size;
        EXPECT_EQ(ledger.count(), size);
        EXPECT_EQ(ledger.bytes(), bytes);
    }
    for (std::size_t turn = 0; turn < count; ++turn) {
        const std::size_t index = order(turn, count);
        EXPECT_TRUE(ledger.release(blocks[index]));
        bytes -= index + 1;
        EXPECT_EQ(ledger.count(), count - turn - 1);
        EXPECT_EQ(ledger.bytes(), bytes);
        EXPECT_FALSE(ledger.release(blocks[index])) << "it is freed";
    }
}

TEST(BlockLedger, FreesBlocksInAnyOrder) {
    for (const FreeingOrder order : kFreeingOrders) {
        for (const std::size_t count : {1U, 2U, 7U, 16U, 100U}) {
            expectFreedOneByOne(count, order);
        }
    }
}

TEST(BlockLedger, RejectsPointersThatAreNotItsBlocks) {
    BlockLedger ledger;
    int local = 0;
    EXPECT_FALSE(ledger.release(nullptr));
    EXPECT_FALSE(ledger.release(&local));
    for (std::size_t count = 1; count <= 20; ++count) {
        auto* const block = static_cast<std::byte*>(ledger.allocate(4));
        EXPECT_FALSE(ledger.release(nullptr));
        EXPECT_FALSE(ledger.release(&local));
        EXPECT_FALSE(ledger.release(block + 1)) << "inside is not its start";
        EXPECT_FALSE(ledger.release(block + 4));
        EXPECT_EQ(ledger.count(), count);
    }
    BlockLedger other;
    void* const foreign = other.allocate(4);
    EXPECT_FALSE(ledger.release(foreign));
    EXPECT_TRUE(other.release(foreign));
}

TEST(BlockLedger, IsUnchangedByARequestBeyondAllMemory) {
    constexpr std::size_t kMax = std::numeric_limits<std::size_t>::max();
    BlockLedger ledger;
    void* const block = ledger.allocate(10);
    EXPECT_EQ(ledger.allocate(kMax), nullptr);
    EXPECT_EQ(ledger.allocate(kMax / 2), nullptr);
    EXPECT_EQ(ledger.count(), 1U);
    EXPECT_EQ(ledger.bytes(), 10U);
    EXPECT_TRUE(ledger.release(block));
}

TEST(Blocks, LeftByTheModuleAreAllCounted) {
    const CallResult result = run([](qvArray*& /*output*/) {
        std::vector<void*> blocks;
        for (std::size_t size = 1; size <= 100; ++size) {
            blocks.push_back(qvMalloc(size));
        }
        for (std::size_t i = 0; i < blocks.size(); i += 2) {
            qvFree(blocks[i]);  // those of an odd size
        }
    });
    EXPECT_EQ(result.leftovers(), (Leftovers{.blocks = 50, .blockBytes = 2550}));
    EXPECT_THAT(result.misuses(), IsEmpty());
}

}  // namespace
}  // namespace zephra
