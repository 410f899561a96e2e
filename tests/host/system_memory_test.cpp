// Memory of the system: small blocks, and large ones on either side of a large page.
#include "system_memory.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <span>

#include "block_checker.h"
#include "support/address_space.h"

namespace zephra {
namespace {

constexpr std::size_t kSizes[] = {
    1, 4096, 2'097'151, 2'097'152, 2'097'153, 4'194'304, 5'000'000,
};

std::span<unsigned char> bytesOf(void* block, std::size_t size) {
    return {static_cast<unsigned char*>(block), size};
}

bool areAll(std::span<const unsigned char> bytes, unsigned char value) {
    return std::ranges::all_of(bytes, [=](unsigned char byte) { return byte == value; });
}

TEST(SystemMemory, GivesAlignedBlocksOfAnySize) {
    for (const std::size_t size : kSizes) {
        void* const first = allocateMemory(size);
        void* const second = allocateMemory(size);
        ASSERT_NE(first, nullptr);
        ASSERT_NE(second, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(first) % alignof(double), 0U);
        std::memset(first, 1, size);
        std::memset(second, 2, size);
        EXPECT_TRUE(areAll(bytesOf(first, size), 1)) << size;
        freeMemory(first, size);
        EXPECT_TRUE(areAll(bytesOf(second, size), 2)) << size;
        freeMemory(second, size);
    }
}

// Filled and freed, so that the next ones may be the same again.
TEST(SystemMemory, GivesZerosAlsoWhereMemoryWasUsedBefore) {
    for (const std::size_t size : kSizes) {
        for (int i = 0; i < 3; ++i) {
            void* const block = allocateZeros(size);
            ASSERT_NE(block, nullptr);
            EXPECT_TRUE(areAll(bytesOf(block, size), 0)) << size;
            std::memset(block, 0xFF, size);
            freeMemory(block, size);
        }
    }
}

TEST(SystemMemory, IsGivenBackWhole) {
    if (kHasBlockChecker) {
        GTEST_SKIP() << "AddressSanitizer keeps what is freed for a while";
    }
    const std::size_t before = veltrace::test::pagesMapped();
    ASSERT_GT(before, 0U);
    for (int i = 0; i < 100; ++i) {
        freeMemory(allocateMemory(2'097'153), 2'097'153);
        freeMemory(allocateZeros(2'097'153), 2'097'153);
    }
    // Each has 1,024 pages, and one more page of any would make 100.
    EXPECT_LT(veltrace::test::pagesMapped(), before + 100);
}

TEST(SystemMemory, HasNoBlockLargerThanTheAddressSpace) {
    for (const std::size_t size : {std::numeric_limits<std::size_t>::max() - 1,
                                   std::numeric_limits<std::size_t>::max() / 2 - 1}) {
        EXPECT_EQ(allocateMemory(size), nullptr);
        EXPECT_EQ(allocateZeros(size), nullptr);
    }
}

}  // namespace
}  // namespace zephra
