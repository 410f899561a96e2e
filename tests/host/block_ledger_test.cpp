// The blocks of a call, of which there may be many, freed in any order.
#include "block_ledger.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <span>
#include <vector>

#include "run.h"

namespace zephra {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t kMany = 100;

/// Where the block stands that is freed as the `turn`th of `count`.
using FreeingOrder = std::size_t (*)(std::size_t turn, std::size_t count);

std::size_t oldestFirst(std::size_t turn, std::size_t /*count*/) {
    return turn;
}
std::size_t newestFirst(std::size_t turn, std::size_t count) {
    return count - 1 - turn;
}
std::size_t scattered(std::size_t turn, std::size_t count) {
    return turn * 37 % count;  // 37 has no factor in common with any count here
}

class BlocksFreed : public testing::TestWithParam<FreeingOrder> {};

INSTANTIATE_TEST_SUITE_P(Orders, BlocksFreed, testing::Values(oldestFirst, newestFirst, scattered));

TEST_P(BlocksFreed, AreGoneOneByOne) {
    for (const std::size_t count : {1U, 2U, 7U, 8U, 9U, 10U, 16U, 17U, 100U}) {
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
            const std::size_t index = GetParam()(turn, count);
            EXPECT_TRUE(ledger.release(blocks[index]));
            bytes -= index + 1;
            EXPECT_EQ(ledger.count(), count - turn - 1);
            EXPECT_EQ(ledger.bytes(), bytes);
            EXPECT_FALSE(ledger.release(blocks[index])) << "it is gone";
        }
        EXPECT_EQ(ledger.count(), 0U);
        EXPECT_EQ(ledger.bytes(), 0U);
    }
}

TEST(BlockLedger, KeepsEveryBlockWholeWhileOthersComeAndGo) {
    struct Block {
        unsigned char* memory;
        std::size_t size;
        unsigned char content;
    };
    BlockLedger ledger;
    std::vector<Block> blocks;
    for (std::size_t step = 0; step < 1000; ++step) {
        const std::size_t size = step * 13 % 97;
        auto* const memory = static_cast<unsigned char*>(ledger.allocate(size));
        ASSERT_NE(memory, nullptr);
        blocks.push_back({memory, size, static_cast<unsigned char>(step % 251)});
        std::memset(memory, blocks.back().content, size);
        if (step % 3 == 2) {
            const auto gone =
                blocks.begin() + static_cast<std::ptrdiff_t>(step * 7 % blocks.size());
            for (std::size_t i = 0; i < gone->size; ++i) {
                ASSERT_EQ(gone->memory[i], gone->content);
            }
            EXPECT_TRUE(ledger.release(gone->memory));
            blocks.erase(gone);
        }
    }
    EXPECT_EQ(ledger.count(), 667U) << "1000 less every third";
    for (const Block& block : blocks) {
        EXPECT_TRUE(ledger.release(block.memory));
    }
    EXPECT_EQ(ledger.count(), 0U);
}

TEST(BlockLedger, RefusesPointersToNoBlock) {
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

TEST(BlockLedger, IsAsItWasAfterARequestBeyondAllMemory) {
    for (const std::size_t count : {0U, 7U, 8U, 9U}) {
        BlockLedger ledger;
        std::vector<void*> blocks;
        for (std::size_t i = 0; i < count; ++i) {
            blocks.push_back(ledger.allocate(10));
        }
        EXPECT_EQ(ledger.allocate(std::numeric_limits<std::size_t>::max() / 2), nullptr);
        EXPECT_EQ(ledger.count(), count);
        EXPECT_EQ(ledger.bytes(), 10 * count);
        for (void* const block : blocks) {
            EXPECT_TRUE(ledger.release(block));
        }
    }
}

TEST(Blocks, OfWhichManyAreLeftAreAllCounted) {
    const CallResult result = run([](qvArray*& /*output*/) {
        std::vector<void*> blocks;
        for (std::size_t size = 1; size <= kMany; ++size) {
            blocks.push_back(qvMalloc(size));
        }
        for (std::size_t i = 0; i < kMany; i += 2) {
            qvFree(blocks[i]);  // those of an odd size
        }
    });
    EXPECT_EQ(result.leftovers(), (Leftovers{.blocks = 50, .blockBytes = 2550}));
    EXPECT_THAT(result.misuses(), IsEmpty());
}

TEST(Blocks, AmongManyAreFreedOnlyOnce) {
    const CallResult result = run([](qvArray*& /*output*/) {
        void* const first = qvMalloc(1);
        for (std::size_t i = 0; i < kMany; ++i) {
            qvMalloc(1);
        }
        qvFree(first);
        qvFree(first);
    });
    EXPECT_EQ(result.leftovers(), (Leftovers{.blocks = 100, .blockBytes = 100}));
    EXPECT_EQ(result.misuses().size(), 1U);
}

// Around the size from which on they are mapped.
TEST(BlockLedger, GivesAndFreesLargeBlocksWhole) {
    constexpr std::size_t kMiB = std::size_t{1} << 20;
    BlockLedger ledger;
    std::vector<std::span<unsigned char>> blocks;
    std::size_t bytes = 0;
    for (int round = 0; round < 3; ++round) {  // more blocks than are looked at first
        for (const std::size_t size : {2 * kMiB - 1, 2 * kMiB, 2 * kMiB + 1, 7 * kMiB - 3}) {
            auto* const block = static_cast<unsigned char*>(ledger.allocate(size));
            ASSERT_NE(block, nullptr);
            blocks.emplace_back(block, size);
            std::memset(block, static_cast<int>(blocks.size()), size);
            bytes += size;
        }
    }
    EXPECT_EQ(ledger.bytes(), bytes);
    EXPECT_EQ(ledger.allocate(std::numeric_limits<std::size_t>::max()), nullptr);
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        EXPECT_EQ(blocks[i].front(), i + 1);
        EXPECT_EQ(blocks[i].back(), i + 1);
        EXPECT_FALSE(ledger.release(blocks[i].data() + 1));
        EXPECT_TRUE(ledger.release(blocks[i].data()));
        EXPECT_FALSE(ledger.release(blocks[i].data()));
    }
    EXPECT_EQ(ledger.count(), 0U);
}

}  // namespace
}  // namespace zephra
