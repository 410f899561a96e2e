#include "worker/growth.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <memory>
#include <unistd.h>
#include <vector>

#include "worker/sanitizer.h"

namespace veltrace::cli {
namespace {

constexpr std::size_t kMiB = std::size_t{1} << 20;

TEST(Growth, NothingHasGrownAtTheStart) {
    EXPECT_FALSE(Growth().hasGrown());
}

TEST(Growth, AFewMebibytesAreNoGrowth) {
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

}  // namespace
}  // namespace veltrace::cli
