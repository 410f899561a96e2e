// The blocks of a call, freed in any order or left behind.
#include <cstddef>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

#include "run.h"

namespace zephra {
namespace {

TEST(Blocks, AreWritableAndFreed) {
    const CallResult result = run([] {
        void* const block = qvMalloc(1000);
        ASSERT_NE(block, nullptr);
        std::memset(block, 0xAB, 1000);
        qvFree(block);
        void* const empty = qvMalloc(0);
        EXPECT_NE(empty, nullptr);
        qvFree(empty);
        qvFree(nullptr);
    });
    EXPECT_EQ(result.leftovers(), Leftovers{});
}

TEST(Blocks, LeftBehindAreCountedWithTheirBytes) {
    const CallResult result = run([] {
        qvMalloc(100);
        qvFree(qvMalloc(7));
        qvMalloc(0);
        qvArrayToString(qvCreateString("four"));  // five bytes with its end
    });
    EXPECT_EQ(result.leftovers(), (Leftovers{.blocks = 3, .blockBytes = 105, .arrays = 1}));
}

/// The index of the block that is freed as the `turn`th of `count`.
using FreeingOrder = std::size_t (*)(std::size_t turn, std::size_t count);

constexpr FreeingOrder kFreeingOrders[] = {
    [](std::size_t turn, std::size_t /*count*/) { return turn; },
    [](std::size_t turn, std::size_t count) { return count - 1 - turn; },
    // 37 has no factor in common with any count here.
    [](std::size_t turn, std::size_t count) { return turn * 37 % count; },
};

/// Frees `freed` of `count` blocks, whose sizes are 1, 2, ... bytes, each of them twice.
void expectFreed(std::size_t count, std::size_t freed, FreeingOrder order) {
    Leftovers expected{.blocks = count - freed, .blockBytes = count * (count + 1) / 2};
    const CallResult result = runWith(kStrict, {}, [&] {
        std::vector<void*> blocks;
        for (std::size_t size = 1; size <= count; ++size) {
            blocks.push_back(qvMalloc(size));
            std::memset(blocks.back(), 0xAB, size);
        }
        for (std::size_t turn = 0; turn < freed; ++turn) {
            const std::size_t index = order(turn, count);
            qvFree(blocks[index]);
            qvFree(blocks[index]);
            expected.blockBytes -= index + 1;
        }
    });
    EXPECT_EQ(result.leftovers(), expected);
    EXPECT_EQ(result.misuses().size(), freed) << "each is freed once";
}

TEST(Blocks, AreFreedInAnyOrder) {
    for (const FreeingOrder order : kFreeingOrders) {
        for (const std::size_t count : {1U, 2U, 7U, 16U, 100U}) {
            expectFreed(count, count / 2, order);
            expectFreed(count, count, order);
        }
    }
}

TEST(Blocks, OfAnotherCallAreNotFreed) {
    run([] {
        void* const block = qvMalloc(4);
        const CallResult inner = runWith(kStrict, {}, [block] { qvFree(block); });
        EXPECT_EQ(inner.misuses().size(), 1U);
        qvFree(block);
    });
}

}  // namespace
}  // namespace zephra
