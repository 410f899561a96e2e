// Messages do not depend on the locale of the host.
#include "support/grouping_locale.h"
#include "support/module_run.h"
#include "support/tiff_builder.h"

namespace veltrace::test {

namespace {

using testing::ElementsAre;

class GroupingLocale : public testing::Test {
private:
    GlobalGroupingLocale locale_;
};

TEST_F(GroupingLocale, LeavesPositionsAndSizesAlone) {
    const ModuleRun run(TiffBuilder().firstOffset(123'456).bytes() + Bytes(1000, 0));
    EXPECT_THAT(run.messages(),
                ElementsAre(message("ZEPHRA:veltrace:badTiffIfdOffset",
                                    "The indicated starting byte of the first image file directory "
                                    "(123456) exceeds the image file size (1008), the image may be "
                                    "corrupt.")));
}

TEST_F(GroupingLocale, LeavesEntryCountsAlone) {
    TiffBuilder tiff;
    tiff.image().statedCount(5462);
    const ModuleRun run(jpegWithExif(tiff.bytes()));
    EXPECT_THAT(run.messages(),
                ElementsAre(message("ZEPHRA:veltrace:jpegApp1MaximumLengthExceeded",
                                    "The  image file directory at byte position 20 claims to have "
                                    "5462 entries, which will exceed the maximum allowed size "
                                    "(64KB) of the APP1 segment specified by the JPEG standard.  "
                                    "This IFD is being ignored.")));
}

TEST_F(GroupingLocale, LeavesBytesAlone) {
    const ModuleRun run(Bytes{0xFF, 0xD8, 0x7F, 0xE1, 0, 8});
    EXPECT_THAT(run.messages(),
                ElementsAre(message("ZEPHRA:veltrace:invalidJpegMarker",
                                    "Encountered 127 instead of the expected value of 255 for a "
                                    "JPEG marker, the image file \"" +
                                        run.fileName() + "\" may be corrupt.")));
}

}  // namespace

}  // namespace veltrace::test
