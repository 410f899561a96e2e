// A value whose size is the largest 32-bit number.
#include <cstdlib>

#include "support/file_test.h"

namespace veltrace::test {

namespace {

constexpr std::uint32_t kLargestSize = 0xFFFFFFFF;

bool machineHasRoomFor(std::size_t size) {
    void* const block = std::malloc(size);
    std::free(block);
    return block != nullptr;
}

TEST(LargestValue, IsReadIntoTheHostsMemory) {
    if (!machineHasRoomFor(kLargestSize)) {
        GTEST_SKIP() << "no address space for 4 GiB";
    }
    zephra::Settings settings = strictHost();
    settings.largestBlock = kLargestSize;
    const ModuleRun run(tiffOf(Dir().entryAt(271, 1, kLargestSize, 8)), settings);
    EXPECT_THAT(run.messages(), testing::ElementsAre(unreadableValue("Make", 8)));
}

}  // namespace

}  // namespace veltrace::test
