// An image of more samples than 16 bits can count.
#include "support/module_run.h"
#include "support/tiff_builder.h"

namespace veltrace::test {

namespace {

TEST(SampleCount, Has32Bits) {
    TiffBuilder file;
    file.image().bytes(277, std::vector<std::uint8_t>(65'539, 1));
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), testing::IsEmpty());
    EXPECT_THAT(run.numbers({"BitsPerSample"}), testing::SizeIs(65'539));
    EXPECT_EQ(run.number({"BitDepth"}), 65'539);
}

}  // namespace

}  // namespace veltrace::test
