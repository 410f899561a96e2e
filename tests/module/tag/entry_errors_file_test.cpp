// Entries that cannot be decoded. Each failure is a warning and costs that entry alone.
#include "support/file_test.h"
#include "support/grouping_locale.h"

namespace veltrace::test {

namespace {

class EntryErrors : public ::testing::TestWithParam<Encoding> {
protected:
    TiffBuilder file{GetParam().order, GetParam().flavour};
};

TEST_P(EntryErrors, CostTheirEntryAlone) {
    const ModuleRun run(
        tiffOf(GetParam(), Dir().shorts(kMake, {1}).entry(kModel, 0, 1, {}).shorts(305, {3})));
    EXPECT_THAT(run.messages(), ElementsAre(noType(272)));
    EXPECT_EQ(run.number({"Make"}), 1);
    EXPECT_FALSE(run.hasField({"Model"}));
    EXPECT_EQ(run.number({"Software"}), 3);
}

TEST_P(EntryErrors, AreNoTypeForCodeZeroBadFormatFor14And16AndUnrecognizedIfdFor13) {
    EXPECT_THAT(ModuleRun(tiffOf(GetParam(), Dir()
                                                 .entry(kMake, 0, 1, {})
                                                 .entry(kMake, 14, 1, {})
                                                 .entry(kMake, 16, 1, {})
                                                 .entry(kMake, 13, 1, {})))
                    .messages(),
                ElementsAre(noType(271), badType(271, 14), badType(271, 16), ifdType(271)));
}

TEST_P(EntryErrors, NameTheInvalidType) {
    for (const std::uint16_t type :
         std::vector<std::uint16_t>{14, 15, 16, 17, 18, 255, 256, 32768, 65535}) {
        EXPECT_THAT(ModuleRun(tiffOf(GetParam(), Dir().entry(kMake, type, 1, {}))).messages(),
                    ElementsAre(badType(271, type)));
    }
}

TEST_P(EntryErrors, RefuseTheIfdTypeForTagsThatPointNowhere) {
    const auto refusal = [](const char* text) {
        return message("ZEPHRA:veltrace:TiffTag:unrecognizedIfd", text);
    };
    EXPECT_THAT(ModuleRun(tiffOf(GetParam(),
                                 Dir().entry(kMake, 13, 1, {1, 0, 0, 0}).entry(65000, 13, 0, {})))
                    .messages(),
                ElementsAre(refusal("Tag 271 has an unrecognized TIFF_IFD data format.\n"),
                            refusal("Tag 65000 has an unrecognized TIFF_IFD data format.\n")));
}

TEST_P(EntryErrors, OfMissingValuesCostTheirEntriesAlone) {
    const ModuleRun run(tiffOf(GetParam(),
                               Dir()
                                   .shorts(274, {6})
                                   .entryAt(kMake, 12, 2, 5000)
                                   .entryAt(65000, 12, 2, 6000)
                                   .shorts(305, {3}),
                               Dir().shorts(274, {8})));
    EXPECT_THAT(run.warnings(),
                ElementsAre(unreadableValue("Make", 5000), unreadableValue(65000, 6000)));
    EXPECT_FALSE(run.error());
    EXPECT_FALSE(run.hasField({"Make"}));
    EXPECT_FALSE(run.hasField({"UnknownTags"}));
    EXPECT_EQ(run.number({"Orientation"}, 0), 6);
    EXPECT_EQ(run.number({"Software"}, 0), 3);
    EXPECT_EQ(run.number({"Orientation"}, 1), 8);
}

INSTANTIATE_TEST_SUITE_P(InEveryEncoding, EntryErrors, ::testing::ValuesIn(kEveryEncoding),
                         encodingName);

TEST(EntryError, OfAPointerTagIsTheSameAsOfAnyTag) {
    EXPECT_THAT(ModuleRun(tiffOf(Dir().entry(34665, 0, 1, {}).entry(34853, 14, 1, {}))).messages(),
                ElementsAre(noType(34665), badType(34853, 14)));
}

TEST(UnreadableValue, IsReportedWithItsTagAndItsPosition) {
    expectShown({
        {Dir().entryAt(kMake, 5, 3, 5000), "Make", "no field", {unreadableValue("Make", 5000)}},
        {Dir().entryAt(65000, 5, 3, 5000),
         "UnknownTags",
         "no field",
         {unreadableValue(65000, 5000)}},
        {Dir().entryAt(kMake, 5, 3, 4294967295),
         "Make",
         "no field",
         {unreadableValue("Make", 4294967295)}},
        // before its type is refused
        {Dir().entryAt(kMake, 13, 3, 5000), "Make", "no field", {unreadableValue("Make", 5000)}},
    });
}

TEST(UnreadableValue, HasItsPositionInTheWholeJpegFile) {
    EXPECT_THAT(ModuleRun(jpegWithExif(tiffOf(Dir().entryAt(kMake, 3, 3, 5000)))).messages(),
                ElementsAre(unreadableValue("Make", 5012)));
}

TEST(UnreadableValue, IsOneThatMissesItsLastByte) {
    Bytes bytes = tiffOf(Dir().rationals(kMake, {{1, 2}, {3, 4}}));
    EXPECT_THAT(ModuleRun(bytes).numbers({"Make"}), ElementsAre(0.5, 0.75));
    bytes.pop_back();
    EXPECT_THAT(ModuleRun(bytes).messages(), ElementsAre(unreadableValue("Make", 26)));
}

TEST(UnreadableValue, UsesTheNamesOfItsOwnDirectory) {
    EXPECT_THAT(ModuleRun(tiffOf(Dir().nest(34853, Dir().shorts(0, {1}).entryAt(2, 5, 3, 9000))))
                    .messages(),
                ElementsAre(unreadableValue("GPSLatitude", 9000)));
}

TEST(UnreadableValue, HasNoDigitGroupingWhateverTheLocale) {
    const GlobalGroupingLocale locale;
    const ModuleRun run(tiffOf(Dir().entryAt(65000, 3, 3, 123456789)));
    EXPECT_THAT(run.messages(), ElementsAre(unreadableValue(65000, 123456789)));
}

zephra::Message refusedBlock(const std::string& size, const std::string& tag) {
    return message("ZEPHRA:veltrace:TagFile:failedMemoryAllocation",
                   "Unable to allocate " + size + " to hold tag data for tag ID " + tag + "\n");
}

// The first two blocks of a call are the file name and the table of the directory.
zephra::Settings refusingTheFirstValue() {
    zephra::Settings settings = strictHost();
    settings.failBlock = 3;
    return settings;
}

TEST(RefusedBlock, CostsItsEntryAlone) {
    const ModuleRun run(tiffOf(Dir().shorts(kMake, {1, 2}).shorts(kModel, {3})),
                        refusingTheFirstValue());
    EXPECT_THAT(run.messages(), ElementsAre(refusedBlock("4", "271")));
    EXPECT_FALSE(run.hasField({"Make"}));
    EXPECT_EQ(run.number({"Model"}), 3);
}

TEST(RefusedBlock, OfNoBytesIsNoFailure) {
    const ModuleRun run =
        quietRun(tiffOf(Dir().shorts(kMake, {}).shorts(kModel, {3})), refusingTheFirstValue());
    EXPECT_TRUE(run.hasField({"Make"}));
    EXPECT_EQ(run.number({"Model"}), 3);
}

TEST(RefusedBlock, IsReportedBeforeAnUnreadableValue) {
    zephra::Settings settings = strictHost();
    settings.largestBlock = 1000;
    EXPECT_THAT(ModuleRun(tiffOf(Dir().entryAt(kMake, 4, 251, 5000).shorts(kModel, {3})), settings)
                    .messages(),
                ElementsAre(refusedBlock("1004", "271")));
}

// A Compression of 1000 codes is reported as one word, so no array is larger than the block.
TEST(RefusedBlock, HasExactlyTheBytesOfTheValue) {
    const Bytes file = tiffOf(Dir().bytes(259, std::vector<std::uint8_t>(1000, 5)));
    zephra::Settings settings = strictHost();
    settings.largestBlock = 1000;
    EXPECT_THAT(ModuleRun(file, settings).messages(), IsEmpty());
    settings.largestBlock = 999;
    EXPECT_THAT(ModuleRun(file, settings).messages(), ElementsAre(refusedBlock("1000", "259")));
}

TEST(RefusedBlock, IsForPointerTagsToo) {
    EXPECT_THAT(
        ModuleRun(tiffOf(Dir().entryAt(34665, 4, 0x3FFFFFFF, 26).shorts(kModel, {3}))).messages(),
        ElementsAre(refusedBlock("4294967292", "34665")));
}

// Its size is not zero, although the block that is asked for is empty.
TEST(RefusedBlock, OfAPointerTagIsReportedWithItsWholeSize) {
    EXPECT_THAT(ModuleRun(tiffOf(Dir().entryAt(34665, 4, 0x40000000, 26).shorts(kModel, {3})),
                          refusingTheFirstValue())
                    .messages(),
                ElementsAre(refusedBlock("4294967296", "34665")));
}

struct HugeValue {
    std::uint16_t type;
    std::uint32_t count;
    const char* bytes;
};
// All but the last ask the host for a few bytes, which it has.
constexpr HugeValue kHugeValues[] = {
    {3, 0x80000000, "4294967296"},  {4, 0x40000000, "4294967296"},  {4, 0x40000001, "4294967300"},
    {5, 0x20000000, "4294967296"},  {8, 0x80000002, "4294967300"},  {9, 0xC0000001, "12884901892"},
    {10, 0x20000001, "4294967304"}, {11, 0x40000001, "4294967300"}, {12, 0xE0000001, "30064771080"},
    {13, 0x40000000, "4294967296"}, {12, 0xFFFFFFFF, "34359738360"}};

TEST(HugeValue, IsRefusedWithItsWholeSizeWhateverTheHostGrants) {
    for (const HugeValue& huge : kHugeValues) {
        SCOPED_TRACE(huge.bytes);
        const ModuleRun run(
            tiffOf(Dir().entryAt(kMake, huge.type, huge.count, 8).shorts(kModel, {3})));
        EXPECT_THAT(run.messages(), ElementsAre(refusedBlock(huge.bytes, "271")));
        EXPECT_EQ(run.number({"Model"}), 3);
        EXPECT_EQ(run.leftovers(), zephra::Leftovers{});
    }
}

}  // namespace

}  // namespace veltrace::test
