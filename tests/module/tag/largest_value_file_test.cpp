// A value whose size is the largest that 32 bits can tell.
#include <cstdlib>

#include "support/module_run.h"
#include "support/tiff_builder.h"

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
    TiffBuilder file;
    file.image().entryAt(271, 1, kLargestSize, 8);
    const ModuleRun run(file.bytes(), settings);
    EXPECT_THAT(run.messages(),
                testing::ElementsAre(
                    message("ZEPHRA:veltrace:badTiffTagOffsetDataRead",
                            "Unable to read TIFF tag \"Make\" value from byte location 8.")));
}

}  // namespace

}  // namespace veltrace::test
