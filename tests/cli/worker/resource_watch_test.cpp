#include "worker/resource_watch.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <new>
#include <unistd.h>
#include <vector>

#include "worker/limits.h"

namespace veltrace::cli {
namespace {

constexpr std::size_t kMiB = std::size_t{1} << 20;

TEST(Growth, AFewMebibytesAreNotGrowth) {
    EXPECT_FALSE(Growth().hasGrown());
    const Growth growth;
    const std::vector<std::byte> block(60 * kMiB);
    EXPECT_FALSE(growth.hasGrown());
}

TEST(Growth, ALargeBlockIsGrowthUntilItIsFreed) {
    if (kHasAddressSanitizer) {
        GTEST_SKIP() << "AddressSanitizer has an allocator of its own";
    }
    const Growth growth;
    auto block = std::make_unique<std::byte[]>(65 * kMiB);
    EXPECT_TRUE(growth.hasGrown());
    block.reset();
    EXPECT_FALSE(growth.hasGrown());
}

TEST(Growth, ManySmallBlocksAreGrowthUntilTheyAreFreed) {
    if (kHasAddressSanitizer) {
        GTEST_SKIP() << "AddressSanitizer has an allocator of its own";
    }
    const Growth growth;
    std::vector<std::unique_ptr<std::byte[]>> blocks;
    for (std::size_t i = 0; i < 65; ++i) {
        for (std::size_t j = 0; j < 1024; ++j) {
            blocks.push_back(std::make_unique<std::byte[]>(1024));
        }
    }
    EXPECT_TRUE(growth.hasGrown());
    blocks.clear();
    EXPECT_FALSE(growth.hasGrown());
}

TEST(Growth, ADescriptorLeftOpenIsGrowthUntilItIsClosed) {
    const Growth growth;
    const int left = dup(STDIN_FILENO);
    EXPECT_TRUE(growth.hasGrown());
    close(left);
    EXPECT_FALSE(growth.hasGrown());
}

// More than any machine has. Volatile, so that the request is made.
volatile std::size_t tooMuch = std::numeric_limits<std::size_t>::max() / 4;

class MemoryWatchTest : public testing::Test {
protected:
    void SetUp() override {
        if (kHasAddressSanitizer) {
            GTEST_SKIP() << "AddressSanitizer ends the process instead";
        }
    }
};

TEST_F(MemoryWatchTest, AnAllocationThatSucceedsIsNotNoted) {
    const MemoryWatch watch;
    ::operator delete(::operator new(1000));
    EXPECT_FALSE(watch.ranOut());
}

TEST_F(MemoryWatchTest, AnAllocationThatFailsIsNotedUntilAReset) {
    MemoryWatch watch;
    EXPECT_THROW(::operator delete(::operator new(tooMuch)), std::bad_alloc);
    EXPECT_TRUE(watch.ranOut());
    watch.reset();
    EXPECT_FALSE(watch.ranOut());
}

TEST_F(MemoryWatchTest, ANothrowAllocationIsNotedAndReturnsNull) {
    const MemoryWatch watch;
    void* const block = ::operator new(tooMuch, std::nothrow);
    EXPECT_EQ(block, nullptr);
    EXPECT_TRUE(watch.ranOut());
}

TEST_F(MemoryWatchTest, ThePreviousHandlerIsRestored) {
    const auto before = std::get_new_handler();
    {
        const MemoryWatch watch;
        EXPECT_NE(std::get_new_handler(), before);
    }
    EXPECT_EQ(std::get_new_handler(), before);
}

}  // namespace
}  // namespace veltrace::cli
