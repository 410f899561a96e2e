// Blocks on either side of a large page.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <new>
#include <span>
#include <vector>

#include "support/address_space.h"
#include "tag/large_page_allocator.h"

namespace veltrace::test {

using namespace module;

namespace {

using Numbers = std::vector<double, LargePageAllocator<double>>;

int handled = 0;

/// Puts a new-handler in place that counts its calls, and gives up at the second.
class CountingHandler {
public:
    CountingHandler() : previous_(std::set_new_handler(count)) { handled = 0; }
    CountingHandler(const CountingHandler&) = delete;
    CountingHandler& operator=(const CountingHandler&) = delete;
    ~CountingHandler() { std::set_new_handler(previous_); }

private:
    static void count() {
        if (++handled == 2) {
            std::set_new_handler(nullptr);
        }
    }

    std::new_handler previous_;
};

TEST(LargePageAllocator, KeepsBlocksOfAnySizeApart) {
    for (const std::size_t bytes : {2'097'144U, 2'097'152U, 2'097'160U, 6'291'456U}) {
        const Numbers first(bytes / sizeof(double), 1.5);
        const Numbers second(bytes / sizeof(double), 2.5);
        EXPECT_TRUE(std::ranges::all_of(first, [](double number) { return number == 1.5; }));
        EXPECT_TRUE(std::ranges::all_of(second, [](double number) { return number == 2.5; }));
    }
}

TEST(LargePageAllocator, KeepsElementsWhileABlockGrowsOverTheBound) {
    Numbers numbers;
    for (int i = 0; i < 600'000; ++i) {  // of 8 bytes
        numbers.push_back(i);
    }
    for (int i = 0; i < 600'000; ++i) {
        ASSERT_EQ(numbers[static_cast<std::size_t>(i)], i);
    }
}

TEST(LargePages, AreZeroAndGivenBackWhole) {
    const std::size_t before = pagesMapped();
    ASSERT_GT(before, 0U);
    for (int i = 0; i < 100; ++i) {
        constexpr std::size_t kSize = 2'097'153;
        auto* const memory = static_cast<unsigned char*>(mapLargePages(kSize));
        EXPECT_TRUE(std::ranges::all_of(std::span(memory, kSize),
                                        [](unsigned char byte) { return byte == 0; }));
        memory[0] = memory[kSize - 1] = 1;
        unmapLargePages(memory, kSize);
    }
    // Each has 1,024 pages, and one more page of any would make 100.
    EXPECT_LT(pagesMapped(), before + 100);
}

TEST(LargePages, AskTheNewHandlerAndThrowWithoutOne) {
    constexpr auto kTooMany = static_cast<std::size_t>(PTRDIFF_MAX);
    EXPECT_THROW(static_cast<void>(mapLargePages(kTooMany)), std::bad_alloc);
    const CountingHandler handler;
    EXPECT_THROW(static_cast<void>(mapLargePages(kTooMany)), std::bad_alloc);
    EXPECT_EQ(handled, 2);
}

}  // namespace

}  // namespace veltrace::test
