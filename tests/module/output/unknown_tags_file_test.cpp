// Tags that the dictionary does not know.
#include "support/file_test.h"

namespace veltrace::test {

namespace {

class UnknownTags : public ::testing::TestWithParam<Encoding> {};

TEST_P(UnknownTags, AreListedInEntryOrderWithTheirIdsPlacesAndValues) {
    const ModuleRun run = quietRun(
        tiffOf(GetParam(), Dir().longs(65001, {7, 8, 9}).bytes(65000, {1}).ascii(2, "pot")));
    EXPECT_THAT(run.dimensions({"UnknownTags"}), ElementsAre(3, 1));
    EXPECT_THAT(run.fieldNames({"UnknownTags"}), ElementsAre("ID", "Offset", "Value"));
    const bool big = GetParam().flavour == Flavour::big;
    const zephra::Value unknown = run.value({"UnknownTags"});
    EXPECT_THAT(unknown.field(0, "ID").numbers(), ElementsAre(65001));
    EXPECT_THAT(unknown.field(0, "Offset").numbers(),
                ElementsAre(big ? 16 + 8 + 3 * 20 + 8 : 8 + 2 + 3 * 12 + 4));
    EXPECT_THAT(unknown.field(0, "Value").numbers(), ElementsAre(7, 8, 9));
    EXPECT_THAT(unknown.field(0, "Value").dimensions(), ElementsAre(3, 1));
    EXPECT_THAT(unknown.field(1, "ID").numbers(), ElementsAre(65000));
    EXPECT_THAT(unknown.field(1, "Offset").numbers(), ElementsAre(0));
    EXPECT_THAT(unknown.field(1, "Value").numbers(), ElementsAre(1));
    EXPECT_THAT(unknown.field(2, "ID").numbers(), ElementsAre(2));
    EXPECT_EQ(unknown.field(2, "Value").text(), "pot");
}

INSTANTIATE_TEST_SUITE_P(InEveryEncoding, UnknownTags, ::testing::ValuesIn(kEveryEncoding),
                         encodingName);

TEST(UnknownTag, OfOneDirectoryLeavesTheFieldOfOthersEmpty) {
    const ModuleRun run =
        quietRun(tiffOf(Dir().shorts(271, {1}), Dir().shorts(65000, {2}), Dir().shorts(271, {3})));
    EXPECT_FALSE(run.value({"UnknownTags"}, 0));
    EXPECT_THAT(run.dimensions({"UnknownTags"}, 1), ElementsAre(1, 1));
    EXPECT_FALSE(run.value({"UnknownTags"}, 2));
}

TEST(UnknownTag, AloneMakesAFieldOfASubDirectory) {
    const ModuleRun run = quietRun(tiffOf(Dir().nest(34665, Dir().shorts(65000, {2}))));
    EXPECT_THAT(run.fieldNames({"DigitalCamera"}), ElementsAre("UnknownTags"));
    EXPECT_EQ(run.number({"DigitalCamera", "UnknownTags", "Value"}), 2);
}

TEST(UnknownTag, MayHaveTheSameIdAsAnother) {
    const ModuleRun run(tiffOf(Dir().shorts(65000, {2}).shorts(65000, {3})));
    EXPECT_THAT(run.dimensions({"UnknownTags"}), ElementsAre(2, 1));
    EXPECT_THAT(run.value({"UnknownTags"}).field(1, "Value").numbers(), ElementsAre(3));
}

TEST(UnknownTag, WithoutAValueIsListedWithAWarning) {
    for (const std::uint16_t type : {std::uint16_t{2}, std::uint16_t{3}, std::uint16_t{5}}) {
        const ModuleRun run(tiffOf(Dir().entryAt(65000, type, 0, 77)));
        EXPECT_THAT(run.messages(), ElementsAre(noPayload(65000)));
        EXPECT_EQ(run.number({"UnknownTags", "ID"}), 65000);
        EXPECT_EQ(run.number({"UnknownTags", "Offset"}), 0);
        EXPECT_TRUE(run.hasField({"UnknownTags", "Value"}));
        EXPECT_FALSE(run.value({"UnknownTags", "Value"}));
    }
}

zephra::Message unrecognizedState(const char* tag) {
    return message(
        "ZEPHRA:veltrace:unknownTagPayloadState",
        std::string("Tag data for unknown tag ID ") + tag + "is in an unrecognized state.\n");
}

// Known tags are reported before unknown ones, and a sub-directory is the value of a known tag.
TEST(UnknownTag, WithoutAValueIsReportedAfterTheReadAndAfterSubDirectories) {
    EXPECT_THAT(ModuleRun(tiffOf(Dir()
                                     .entryAt(65000, 3, 0, 0)
                                     .entryAt(65001, 3, 0, 0)
                                     .nest(34665, Dir().entryAt(65002, 3, 0, 0))
                                     .entry(271, 0, 1, {}),
                                 Dir().entryAt(65003, 3, 0, 0)))
                    .messages(),
                ElementsAre(noType(271), unrecognizedState("65002"), unrecognizedState("65000"),
                            unrecognizedState("65001"), unrecognizedState("65003")));
}

TEST(UnknownTag, OfTheIdOfWidthOrHeightIsNotListed) {
    const ModuleRun run = quietRun(
        tiffOf(Dir().nest(34853, Dir().shorts(256, {9}).shorts(257, {9}).shorts(258, {1, 2, 3}))));
    EXPECT_THAT(run.fieldNames({"GPSInfo"}), ElementsAre("UnknownTags"));
    EXPECT_EQ(run.number({"GPSInfo", "UnknownTags", "ID"}), 258);
    EXPECT_THAT(run.dimensions({"GPSInfo", "UnknownTags", "Value"}), ElementsAre(3, 1));
}

}  // namespace

}  // namespace veltrace::test
