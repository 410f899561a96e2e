// One directory: its count, its table, its entries, and what happens when one of them is damaged.
#include "support/file_test.h"

namespace veltrace::test {

namespace {

zephra::Message badAllocation(std::uint64_t bytes) {
    return message(
        "ZEPHRA:veltrace:badRawIfdBufferMemoryAllocation",
        "Could not allocate " + std::to_string(bytes) + " bytes required for the IFD table.");
}

/// Blocks of a call: 1 the file name, 2 the table of the first directory, then one for each value.
zephra::Settings hostWithoutBlock(std::uint64_t number) {
    zephra::Settings settings = strictHost();
    settings.failBlock = number;
    return settings;
}

class Directory : public testing::TestWithParam<Encoding> {
protected:
    static TiffBuilder newFile() { return TiffBuilder(GetParam().order, GetParam().flavour); }
    static bool isBig() { return GetParam().flavour == Flavour::big; }
    static std::uint64_t firstPosition() { return isBig() ? 16 : 8; }
    static std::uint64_t entrySize() { return isBig() ? 20 : 12; }
};

INSTANTIATE_TEST_SUITE_P(Encodings, Directory, testing::ValuesIn(kEveryEncoding), encodingName);

TEST_P(Directory, WithoutEntriesIsAnErrorWithItsAbsolutePosition) {
    const ModuleRun run(tiffOf(GetParam(), Dir()));
    EXPECT_THAT(run.messages(), ElementsAre(zeroEntries(firstPosition())));
    EXPECT_FALSE(run.output());
}

TEST_P(Directory, WithATruncatedTableReportsTableNumberZero) {
    TiffBuilder file = newFile();
    file.image().shorts(274, {6}).shorts(266, {2});
    const std::uint64_t tableEnd = file.entryPosition(file.image(), 2);
    Bytes bytes = file.bytes();
    for (const std::uint64_t missing : {std::uint64_t{1}, entrySize(), 2 * entrySize()}) {
        bytes.resize(tableEnd - missing);
        const ModuleRun run(bytes);
        EXPECT_THAT(run.messages(), ElementsAre(unreadableTable("IFD table #0")));
        EXPECT_FALSE(run.output());
    }
}

TEST_P(Directory, WithHalfACountIsAnError) {
    TiffBuilder file = newFile();
    file.image().shorts(274, {6});
    Bytes bytes = file.bytes();
    bytes.resize(file.entryPosition(file.image(), 0) - 1);
    const ModuleRun run(bytes);
    EXPECT_THAT(run.messages(), ElementsAre(unreadableCount(run.fileName())));
    EXPECT_EQ(run.leftovers(), zephra::Leftovers{});
}

TEST_P(Directory, WithoutMemoryForItsTableIsAnError) {
    const ModuleRun run(tiffOf(GetParam(), Dir().shorts(274, {6}).shorts(266, {2})),
                        hostWithoutBlock(2));
    EXPECT_THAT(run.messages(), ElementsAre(badAllocation(2 * entrySize())));
    EXPECT_EQ(run.leftovers(), zephra::Leftovers{});
}

TEST_P(Directory, OfAnySizeIsRead) {
    TiffBuilder file = newFile();
    for (std::uint32_t i = 1; i <= 10'000; ++i) {
        file.image().longs(274, {i});
    }
    const ModuleRun run = quietRun(file.bytes());
    EXPECT_EQ(run.number({"Orientation"}), 10'000);
}

TEST_P(Directory, FailingEntryCostsOneWarningAndNothingElse) {
    const ModuleRun run(tiffOf(GetParam(), Dir()
                                               .shorts(266, {2})
                                               .entryAt(271, 14, 1, 0)
                                               .shorts(274, {6})
                                               .entryAt(305, 0, 1, 0)
                                               .entryAt(315, 13, 1, 0)
                                               .ascii(306, "noon")));
    EXPECT_THAT(run.warnings(), ElementsAre(badType(271, 14), noType(305), ifdType(315)));
    EXPECT_FALSE(run.error());
    EXPECT_EQ(run.number({"FillOrder"}), 2);
    EXPECT_EQ(run.number({"Orientation"}), 6);
    EXPECT_EQ(run.text({"DateTime"}), std::string("noon\0", 5));
    EXPECT_FALSE(run.hasField({"Make"}));
    EXPECT_FALSE(run.hasField({"Software"}));
    EXPECT_FALSE(run.hasField({"Artist"}));
}

TEST_P(Directory, WarningsOfItsEntriesComeInTheirOrder) {
    const ModuleRun run(tiffOf(GetParam(), Dir()
                                               .entryAt(271, 14, 1, 0)
                                               .rationals(282, {{1, 0}})
                                               .entryAt(272, 15, 1, 0)
                                               .rationals(283, {{1, 0}})
                                               .entryAt(274, 16, 1, 0)));
    std::vector<std::string> places;
    for (const zephra::Message& warning : run.warnings()) {
        for (const char* place : {"ID 271", "ID 272", "ID 274", "XResolution", "YResolution"}) {
            if (warning.text.find(place) != std::string::npos) {
                places.emplace_back(place);
            }
        }
    }
    EXPECT_THAT(places, ElementsAre("ID 271", "XResolution", "ID 272", "YResolution", "ID 274"));
}

// Sub-directories: all four kinds, and what the message of their table calls them.

struct Kind {
    const char* name;
    std::uint16_t pointer;
    const char* field;
    const char* table;
};

constexpr Kind kKinds[] = {
    {"Generic", 330, "SubIFDs", "IFD table #0"},
    {"Exif", 34665, "DigitalCamera", "the Exif sub IFD table"},
    {"Gps", 34853, "GPSInfo", "the GPSInfo sub IFD table"},
    {"Interoperability", 40965, "InteroperabilityIFD", "the Interoperability sub IFD table"},
};

class SubDirectoryOf : public testing::TestWithParam<std::tuple<Encoding, Kind>> {
protected:
    static TiffBuilder newFile() {
        const Encoding& encoding = std::get<Encoding>(GetParam());
        return TiffBuilder(encoding.order, encoding.flavour);
    }
    static const Kind& kind() { return std::get<Kind>(GetParam()); }
    static std::uint64_t entrySize() {
        return std::get<Encoding>(GetParam()).flavour == Flavour::big ? 20 : 12;
    }
    static void expectOnlyTheSubDirectoryMissing(const ModuleRun& run) {
        EXPECT_FALSE(run.error());
        EXPECT_EQ(run.number({"Orientation"}), 6);
        EXPECT_FALSE(run.hasField({kind().field}));
        EXPECT_EQ(run.leftovers(), zephra::Leftovers{});
    }
};

std::string encodingAndKind(const testing::TestParamInfo<std::tuple<Encoding, Kind>>& info) {
    const auto& [encoding, kind] = info.param;
    return encodingName({encoding, info.index}) + kind.name;
}

INSTANTIATE_TEST_SUITE_P(EncodingsAndKinds, SubDirectoryOf,
                         testing::Combine(testing::ValuesIn(kEveryEncoding),
                                          testing::ValuesIn(kKinds)),
                         encodingAndKind);

TEST_P(SubDirectoryOf, WithoutEntriesIsAWarningWithItsPosition) {
    TiffBuilder file = newFile();
    const auto& child = file.child();
    file.image().sub(kind().pointer, child).shorts(274, {6});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.warnings(), ElementsAre(zeroEntries(file.positionOf(child))));
    expectOnlyTheSubDirectoryMissing(run);
}

TEST_P(SubDirectoryOf, WithATruncatedTableIsAWarningThatNamesItsKind) {
    TiffBuilder file = newFile();
    const auto& child = file.child().shorts(1, {1}).statedCount(200);
    file.image().sub(kind().pointer, child).shorts(274, {6});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.warnings(), ElementsAre(unreadableTable(kind().table)));
    expectOnlyTheSubDirectoryMissing(run);
}

TEST_P(SubDirectoryOf, WithoutMemoryForItsTableIsAWarning) {
    TiffBuilder file = newFile();
    const auto& child = file.child().shorts(1, {1});
    file.image().sub(kind().pointer, child).shorts(274, {6});
    const ModuleRun run(file.bytes(), hostWithoutBlock(4));
    EXPECT_THAT(run.warnings(), ElementsAre(badAllocation(entrySize())));
    expectOnlyTheSubDirectoryMissing(run);
}

TEST_P(SubDirectoryOf, WithAnUnreadableCountIsAWarningUnlessItHoldsAnImage) {
    TiffBuilder file = newFile();
    const auto& child = file.child();
    file.image().sub(kind().pointer, child).shorts(274, {6});
    Bytes bytes = file.bytes();
    bytes.resize(file.positionOf(child) + 1);
    const ModuleRun run(bytes);
    EXPECT_THAT(run.messages(), ElementsAre(unreadableCount(run.fileName())));
    if (kind().pointer == 330) {
        EXPECT_TRUE(run.error());
        EXPECT_FALSE(run.output());
    } else {
        expectOnlyTheSubDirectoryMissing(run);
    }
}

// Counts and table sizes of BigTIFF, which keep their low 32 bits.

class BigDirectory : public testing::Test {
protected:
    static Bytes fileOfStatedCount(std::uint64_t count) {
        return tiffOf({Order::little, Flavour::big},
                      Dir().shorts(274, {6}).shorts(266, {2}).statedCount(count));
    }
};

TEST_F(BigDirectory, CountKeepsItsLow32Bits) {
    const ModuleRun run(fileOfStatedCount(0xABCD'0000'0000'0001));
    EXPECT_EQ(run.number({"Orientation"}), 6);
    EXPECT_EQ(run.number({"FillOrder"}), 1) << "the fallback, for the second entry is not read";
}

TEST_F(BigDirectory, CountWithoutLow32BitsIsZero) {
    const ModuleRun run(fileOfStatedCount(0x1'0000'0000));
    EXPECT_THAT(run.messages(), ElementsAre(zeroEntries(16)));
}

TEST_F(BigDirectory, TableSizeThatWrapsToZeroHasZeroEntries) {
    for (const std::uint64_t count : {0x4000'0000U, 0x8000'0000U, 0xC000'0000U}) {
        const ModuleRun run(fileOfStatedCount(count));
        EXPECT_THAT(run.messages(), ElementsAre(zeroEntries(16)));
    }
}

// 214748365 entries of 20 bytes are 4 bytes more than 32 bits hold.

TEST_F(BigDirectory, TableSizeThatWrapsFailsAsAShortRead) {
    const ModuleRun run(fileOfStatedCount(214'748'365));
    EXPECT_THAT(run.messages(), ElementsAre(unreadableTable("IFD table #0")));
    EXPECT_EQ(run.leftovers(), zephra::Leftovers{});
}

TEST_F(BigDirectory, TableSizeThatWrapsIsAskedForFirst) {
    const ModuleRun run(fileOfStatedCount(214'748'365), hostWithoutBlock(2));
    EXPECT_THAT(run.messages(), ElementsAre(badAllocation(4)));
}

TEST_F(BigDirectory, LargestTableSizeIsUnsigned) {
    const ModuleRun run(fileOfStatedCount(214'748'364));
    EXPECT_THAT(run.messages(), ElementsAre(badAllocation(4'294'967'280)));
}

}  // namespace

}  // namespace veltrace::test
