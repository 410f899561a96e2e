// Where arrays are: small ones together, large ones on their own, all zero and aligned.
#include "array_memory.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <span>
#include <utility>
#include <vector>

#include "run.h"

namespace zephra {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

bool isAligned(const void* memory) {
    return reinterpret_cast<std::uintptr_t>(memory) % alignof(double) == 0;
}

bool areAll(const auto& elements, double value) {
    return std::ranges::all_of(elements, [value](auto element) { return element == value; });
}

TEST(ArrayMemory, GivesAlignedZeroBlocksThatDoNotOverlap) {
    constexpr std::size_t kLargest = std::max<std::size_t>(ArrayMemory::kLargestSharing, 1);
    if (kLargest == 1) {
        GTEST_SKIP() << "AddressSanitizer watches blocks of their own";
    }
    ArrayMemory memory;
    std::vector<std::span<unsigned char>> blocks;
    // More than a megabyte: several chunks, the largest ones among them.
    for (std::size_t i = 0; i < 3 * kLargest; ++i) {
        const std::size_t size = i * 387 % kLargest + 1;
        auto* const block = static_cast<unsigned char*>(memory.allocate(size));
        ASSERT_NE(block, nullptr);
        ASSERT_TRUE(isAligned(block));
        blocks.emplace_back(block, size);
        ASSERT_TRUE(areAll(blocks.back(), 0)) << i;
        std::memset(block, static_cast<int>(i % 255 + 1), size);
    }
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        ASSERT_TRUE(areAll(blocks[i], static_cast<double>(i % 255 + 1))) << i;
    }
}

// Where nothing shares, all are on their own.
TEST(ArrayMemory, FreesOfTheBlocksOnTheirOwnThoseThatAreUnused) {
    constexpr std::size_t kLarge = 5000;
    ArrayMemory memory;
    auto* const small = static_cast<unsigned char*>(memory.allocate(16));
    std::vector<void*> large;
    for (int i = 0; i < 5; ++i) {
        large.push_back(memory.allocate(kLarge));
        ASSERT_NE(large.back(), nullptr);
        EXPECT_TRUE(isAligned(large.back()));
        EXPECT_TRUE(areAll(std::span(static_cast<unsigned char*>(large.back()), kLarge), 0));
        std::memset(large.back(), i + 1, kLarge);
    }
    small[15] = 'k';
    memory.releaseAlone([&](const void* block) {
        return block == large[0] || block == large[3] || block == large[4];
    });
    for (const std::size_t i : {0U, 3U, 4U}) {
        EXPECT_FALSE(memory.contains(large[i])) << i;
    }
    for (const std::size_t i : {1U, 2U}) {
        EXPECT_TRUE(memory.contains(large[i])) << i;
        EXPECT_TRUE(areAll(std::span(static_cast<unsigned char*>(large[i]), kLarge),
                           static_cast<double>(i + 1)));
    }
    EXPECT_TRUE(memory.contains(small));
    EXPECT_EQ(small[15], 'k');
    EXPECT_NE(memory.allocate(kLarge), nullptr);
}

TEST(ArrayMemory, KnowsItsBlocksByTheirAddresses) {
    ArrayMemory memory;
    const ArrayMemory other;
    int local = 0;
    EXPECT_FALSE(memory.contains(&local));
    EXPECT_FALSE(memory.contains(nullptr));
    std::vector<void*> blocks;
    for (const std::size_t size : {1U, 24U, 1024U, 1025U, 100'000U}) {
        for (int i = 0; i < 20; ++i) {  // more than a chunk
            blocks.push_back(memory.allocate(size));
        }
    }
    for (const void* const block : blocks) {
        EXPECT_TRUE(memory.contains(block));
        EXPECT_FALSE(other.contains(block));
    }
    EXPECT_FALSE(memory.contains(&local));
    EXPECT_FALSE(memory.contains(nullptr));
}

// Around the size, with the 16 bytes before a block, from which on they are mapped.
TEST(ArrayMemory, GivesLargeBlocksWholeAndZero) {
    constexpr std::size_t kMiB = std::size_t{1} << 20;
    ArrayMemory memory;
    std::vector<std::span<unsigned char>> blocks;
    for (const std::size_t size : {2 * kMiB - 17, 2 * kMiB - 16, 2 * kMiB, 2 * kMiB + 1,
                                   4 * kMiB - 16, 4 * kMiB - 15, 9 * kMiB + 5}) {
        auto* const block = static_cast<unsigned char*>(memory.allocate(size));
        ASSERT_NE(block, nullptr);
        EXPECT_TRUE(isAligned(block));
        blocks.emplace_back(block, size);
        EXPECT_TRUE(areAll(blocks.back(), 0)) << size;
        std::memset(block, static_cast<int>(blocks.size()), size);
    }
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        EXPECT_TRUE(areAll(blocks[i], static_cast<double>(i + 1))) << blocks[i].size();
    }
}

TEST(ArrayMemory, RefusesWhatNoMemoryCouldHold) {
    ArrayMemory memory;
    EXPECT_EQ(memory.allocate(std::numeric_limits<std::size_t>::max()), nullptr);
    EXPECT_EQ(memory.allocate(std::numeric_limits<std::size_t>::max() - 7), nullptr);
    EXPECT_NE(memory.allocate(8), nullptr);
}

/// Makes arrays with `make`, for each size up to `sizes`, and fills each with elements of its own.
template <class Element>
void expectFreshArrays(std::size_t sizes, qvArray* (*make)(std::size_t size)) {
    const CallResult result = run([&](qvArray*& /*output*/) {
        std::vector<std::span<Element>> all;
        for (std::size_t size = 0; size <= sizes; ++size) {
            qvArray* const array = make(size);
            ASSERT_NE(array, nullptr) << size;
            void* const data = qvGetData(array);
            EXPECT_TRUE(isAligned(data));
            all.emplace_back(static_cast<Element*>(data), size);
            ASSERT_TRUE(areAll(all.back(), 0)) << size;
            std::ranges::fill(all.back(), static_cast<Element>(size % 2 + 1));
        }
        for (std::size_t size = 0; size <= sizes; ++size) {
            ASSERT_TRUE(areAll(all[size], static_cast<double>(size % 2 + 1))) << size;
        }
    });
    EXPECT_THAT(result.misuses(), IsEmpty());
}

// From arrays that share their memory to arrays that do not.
TEST(Arrays, OfEverySizeAreAlignedAndZeroAndTheirOwn) {
    expectFreshArrays<double>(200, [](std::size_t size) { return makeNumeric({1, size}); });
    expectFreshArrays<double>(150, [](std::size_t size) { return makeNumeric({size, 1, 1}); });
    expectFreshArrays<qvChar>(600, [](std::size_t size) { return makeChar({1, size}); });
    expectFreshArrays<unsigned char>(
        1100, [](std::size_t size) { return makeNumeric({size}, qvClassLogical); });
}

TEST(Arrays, OfManyDimensionsKeepThemBesideTheirNeighbours) {
    const std::vector<std::vector<std::size_t>> shapes{
        {2, 3, 4}, {1, 1, 1, 1, 5}, {7, 1}, {0, 3, 2}, {2, 1, 2, 1, 2, 1, 2, 1, 2}, {3, 50, 9}};
    const std::size_t sizes[] = {24, 5, 7, 0, 32, 1350};
    const CallResult result = run([&](qvArray*& output) {
        output = makeCell({shapes.size()});
        std::vector<qvArray*> arrays;
        for (std::size_t i = 0; i < shapes.size(); ++i) {
            arrays.push_back(makeNumeric(shapes[i]));
            qvSetCell(output, i, arrays.back());
        }
        for (std::size_t i = 0; i < shapes.size(); ++i) {
            std::fill_n(static_cast<double*>(qvGetData(arrays[i])), sizes[i],
                        static_cast<double>(i));
        }
    });
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        const Value array = result.output().cell(i);
        EXPECT_THAT(array.dimensions(), ElementsAreArray(shapes[i]));
        EXPECT_EQ(array.size(), sizes[i]);
        EXPECT_THAT(array.numbers(), Each(static_cast<double>(i)));
        EXPECT_EQ(array.numbers().size(), sizes[i]);
    }
}

TEST(Arrays, ByTheThousandLiveAsLongAsTheirResult) {
    constexpr std::size_t kMany = 20'000;  // more than a megabyte
    CallResult first = run([](qvArray*& output) {
        output = makeCell({kMany, 2});
        for (std::size_t i = 0; i < kMany; ++i) {
            qvSetCell(output, i, qvCreateDoubleScalar(static_cast<double>(i)));
            qvSetCell(output, kMany + i, qvCreateString("kiln"));
        }
    });
    const CallResult result = std::move(first);
    const CallResult other = run([](qvArray*& output) { output = makeChar({1, 100}); });
    for (std::size_t i = 0; i < kMany; ++i) {
        ASSERT_EQ(result.output().cell(i).numbers().front(), static_cast<double>(i));
        ASSERT_EQ(result.output().cell(kMany + i).text(), "kiln");
    }
    EXPECT_THAT(other.output().characters(), Each(0));
    EXPECT_EQ(result.leftovers(), Leftovers{});
}

TEST(Structures, WithoutFieldsHaveElementsAllTheSame) {
    const CallResult result = run([](qvArray*& output) {
        output = makeStruct({2, 1, 3}, {"inner"});
        qvSetField(output, 5, "inner", makeStruct({4, 1}, {}));
        qvSetField(output, 0, "inner", makeStruct({1}, {}));
    });
    EXPECT_THAT(result.output().dimensions(), ElementsAre(2, 1, 3));
    const Value inner = result.output().field(5, "inner");
    EXPECT_EQ(inner.className(), "struct");
    EXPECT_THAT(inner.dimensions(), ElementsAre(4, 1));
    EXPECT_EQ(inner.fieldCount(), 0U);
    EXPECT_FALSE(inner.field(0, "inner"));
    EXPECT_EQ(result.output().field(0, "inner").size(), 1U);
    EXPECT_THAT(result.misuses(), IsEmpty());
}

}  // namespace
}  // namespace zephra
