// That an entry whose value is missing costs that entry alone.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/encodings.h"
#include "support/module_run.h"

namespace veltrace::test {

namespace {

using ::testing::ElementsAre;

class MissingValue : public ::testing::TestWithParam<Encoding> {};

INSTANTIATE_TEST_SUITE_P(Encodings, MissingValue, ::testing::ValuesIn(kEveryEncoding),
                         encodingName);

TEST_P(MissingValue, IsAWarningAndItsNeighboursAreRead) {
    TiffBuilder file(GetParam().order, GetParam().flavour);
    file.image()
        .shorts(274, {6})
        .entryAt(271, 12, 2, 5000)
        .entryAt(65000, 12, 2, 6000)
        .shorts(305, {3});
    file.addImage().shorts(274, {8});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.warnings(),
                ElementsAre(message("ZEPHRA:veltrace:badTiffTagOffsetDataRead",
                                    "Unable to read TIFF tag \"Make\" value from byte location "
                                    "5000."),
                            message("ZEPHRA:veltrace:badTiffTagOffsetDataRead",
                                    "Unable to read value for TIFF tag #65000 from byte location "
                                    "6000.")));
    EXPECT_FALSE(run.error());
    EXPECT_FALSE(run.hasField({"Make"}));
    EXPECT_FALSE(run.hasField({"UnknownTags"}));
    EXPECT_EQ(run.number({"Orientation"}, 0), 6);
    EXPECT_EQ(run.number({"Software"}, 0), 3);
    EXPECT_EQ(run.number({"Orientation"}, 1), 8);
}

}  // namespace

}  // namespace veltrace::test
