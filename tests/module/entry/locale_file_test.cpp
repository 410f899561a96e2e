// Messages do not depend on the locale of the host.
#include "support/file_test.h"
#include "support/grouping_locale.h"

namespace veltrace::test {

namespace {

class GroupingLocale : public testing::Test {
private:
    GlobalGroupingLocale locale_;
};

TEST_F(GroupingLocale, LeavesPositionsAndSizesAlone) {
    const ModuleRun run(TiffBuilder().firstOffset(123'456).bytes() + Bytes(1000, 0));
    EXPECT_THAT(run.messages(), ElementsAre(firstOffsetPastTheEnd(123456, 1008)));
}

TEST_F(GroupingLocale, LeavesEntryCountsAlone) {
    const ModuleRun run(jpegWithExif(tiffOf(Dir().statedCount(5462))));
    EXPECT_THAT(run.messages(),
                ElementsAre(message("ZEPHRA:veltrace:jpegApp1MaximumLengthExceeded",
                                    "The  image file directory at byte position 20 claims to have "
                                    "5462 entries, which will exceed the maximum allowed size "
                                    "(64KB) of the APP1 segment specified by the JPEG standard.  "
                                    "This IFD is being ignored.")));
}

TEST_F(GroupingLocale, LeavesBytesAlone) {
    const ModuleRun run(Bytes{0xFF, 0xD8, 0x7F, 0xE1, 0, 8});
    EXPECT_THAT(run.messages(), ElementsAre(badMarker(127, run.fileName())));
}

}  // namespace

}  // namespace veltrace::test
