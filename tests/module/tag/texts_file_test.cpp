// ASCII values.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string_view>

#include "support/module_run.h"
#include "support/tiff_builder.h"

namespace veltrace::test {

namespace {

using namespace std::string_view_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Text, OfAKnownTagKeepsItsTerminatingNul) {
    TiffBuilder file;
    file.image().rawAscii(305, "AB\0"sv);
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_EQ(run.text({"Software"}), "AB\0"sv);
    EXPECT_THAT(run.dimensions({"Software"}), ElementsAre(1, 3));
}

TEST(Text, OfAnUnknownTagEndsAtItsFirstNul) {
    TiffBuilder file;
    file.image().rawAscii(65000, "AB\0"sv);
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_EQ(run.text({"UnknownTags", "Value"}), "AB");
    EXPECT_THAT(run.dimensions({"UnknownTags", "Value"}), ElementsAre(1, 2));
}

TEST(Text, OfAnUnknownTagThatBeginsWithANulIsAnEmptyString) {
    TiffBuilder file;
    file.image().rawAscii(65000, "\0AB"sv);
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_EQ(run.text({"UnknownTags", "Value"}), "");
    EXPECT_THAT(run.dimensions({"UnknownTags", "Value"}), ElementsAre(1, 0));
}

TEST(Text, KeepsEveryNulBetweenSeveralStrings) {
    TiffBuilder file;
    file.image().rawAscii(305, "one\0two\0\0"sv);
    EXPECT_EQ(ModuleRun(file.bytes()).text({"Software"}), "one\0two\0\0"sv);
}

TEST(Text, NeedsNoTerminatingNul) {
    TiffBuilder file;
    file.image().rawAscii(305, "kiln").rawAscii(65000, "kiln");
    const ModuleRun run(file.bytes());
    EXPECT_EQ(run.text({"Software"}), "kiln");
    EXPECT_EQ(run.text({"UnknownTags", "Value"}), "kiln");
}

TEST(Text, MayBeASingleNul) {
    TiffBuilder file;
    file.image().rawAscii(305, "\0"sv);
    EXPECT_EQ(ModuleRun(file.bytes()).text({"Software"}), "\0"sv);
}

TEST(Text, OfNoCharactersIsNoValue) {
    TiffBuilder file;
    file.image().rawAscii(305, "");
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_TRUE(run.hasField({"Software"}));
    EXPECT_FALSE(run.value({"Software"}));
}

TEST(Text, WidensItsBytesWithoutASign) {
    TiffBuilder file;
    file.image().rawAscii(305, "\xE9\x80\xFF").rawAscii(65000, "\xE9\x80\xFF");
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.value({"Software"}).characters(), ElementsAre(0x00E9, 0x0080, 0x00FF));
    EXPECT_THAT(run.value({"UnknownTags", "Value"}).characters(),
                ElementsAre(0x00E9, 0x0080, 0x00FF));
}

TEST(Text, OfGpsAndInteroperabilityTagsKeepsItsTerminatingNul) {
    TiffBuilder file;
    file.image().sub(34853, file.child().ascii(1, "N")).sub(40965, file.child().ascii(1, "R98"));
    const ModuleRun run(file.bytes());
    EXPECT_EQ(run.text({"GPSInfo", "GPSLatitudeRef"}), "N\0"sv);
    EXPECT_EQ(run.text({"InteroperabilityIFD", "InteroperabilityIndex"}), "R98\0"sv);
}

}  // namespace

}  // namespace veltrace::test
