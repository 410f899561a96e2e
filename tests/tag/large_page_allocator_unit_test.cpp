// Where large blocks begin.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <vector>

#include "tag/large_page_allocator.h"

namespace veltrace::test {

namespace {

constexpr std::size_t kLargePage = 2'097'152;

using Numbers = std::vector<double, LargePageAllocator<double>>;

bool beginsOnALargePage(const Numbers& numbers) {
    return reinterpret_cast<std::uintptr_t>(numbers.data()) % kLargePage == 0;
}

TEST(LargePageAllocator, BeginsBlocksOfALargePageOrMoreOnOne) {
    for (const std::size_t bytes : {kLargePage, kLargePage + 8, 3 * kLargePage - 8}) {
        const Numbers first(bytes / sizeof(double), 1.5);
        const Numbers second(bytes / sizeof(double), 2.5);
        EXPECT_TRUE(beginsOnALargePage(first));
        EXPECT_TRUE(beginsOnALargePage(second));
        EXPECT_EQ(std::ranges::count(first, 1.5), first.size());
        EXPECT_EQ(std::ranges::count(second, 2.5), second.size());
    }
}

TEST(LargePageAllocator, KeepsElementsWhileABlockGrowsOverTheBound) {
    Numbers numbers;
    for (std::size_t i = 0; i < kLargePage / 4; ++i) {
        numbers.push_back(static_cast<double>(i));
    }
    EXPECT_TRUE(beginsOnALargePage(numbers));
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        ASSERT_EQ(numbers[i], static_cast<double>(i));
    }
}

}  // namespace

}  // namespace veltrace::test
