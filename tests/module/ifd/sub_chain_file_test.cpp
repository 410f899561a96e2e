// Which chains go on behind their first directory, and which directories are kept at all.
#include "support/file_test.h"

namespace veltrace::test {

namespace {

using testing::Field;
using testing::SizeIs;

class SubChain : public testing::TestWithParam<Encoding> {
protected:
    TiffBuilder file_{GetParam().order, GetParam().flavour};
};

INSTANTIATE_TEST_SUITE_P(Encodings, SubChain, testing::ValuesIn(kEveryEncoding), encodingName);

TEST_P(SubChain, OfImagesFollowsItsNextPointers) {
    auto& first = file_.child().shorts(274, {6});
    auto& second = file_.child().shorts(274, {8});
    file_.image().shorts(274, {3}).sub(330, first);
    first.next(file_.positionOf(second));
    const ModuleRun run = quietRun(file_.bytes());
    EXPECT_EQ(run.directories(), 1U);
    EXPECT_THAT(run.dimensions({"SubIFDs"}), ElementsAre(2, 1));
    EXPECT_EQ(run.value({"SubIFDs"}).field(0, "Orientation").numbers().front(), 6);
    EXPECT_EQ(run.value({"SubIFDs"}).field(1, "Orientation").numbers().front(), 8);
}

TEST_P(SubChain, OfImagesKeepsWhatCameBeforeABrokenLink) {
    auto& child = file_.child().shorts(274, {6}).next(1'000'000);
    file_.image().sub(330, child);
    file_.addImage().shorts(274, {8});
    const ModuleRun run(file_.bytes());
    EXPECT_THAT(run.messages(), ElementsAre(nextPointerPastTheEnd(run.fileName())));
    EXPECT_EQ(run.directories(), 2U);
    EXPECT_EQ(run.number({"SubIFDs", "Orientation"}), 6);
}

TEST_P(SubChain, OfExifGpsOrInteroperabilityIsOneDirectoryWhateverItsNextPointer) {
    for (const auto& [pointer, field] :
         {std::pair{34665, "DigitalCamera"}, {34853, "GPSInfo"}, {40965, "InteroperabilityIFD"}}) {
        TiffBuilder file(GetParam().order, GetParam().flavour);
        auto& first = file.child().shorts(1, {1});
        const auto& second = file.child().shorts(1, {2});
        file.image().sub(static_cast<std::uint16_t>(pointer), first);
        for (const std::uint64_t next : {file.positionOf(second), std::uint64_t{0xFFFF'FFFF}}) {
            first.next(next);
            const ModuleRun run = quietRun(file.bytes());
            EXPECT_THAT(run.dimensions({field}), ElementsAre(1, 1)) << field;
        }
    }
}

TEST_P(SubChain, WithoutItsNextPointerIsNoTrouble) {
    auto& exif = file_.child().shorts(37383, {5});
    file_.image().sub(34665, exif);
    Bytes bytes = file_.bytes();
    bytes.resize(file_.entryPosition(exif, 1));
    const ModuleRun run = quietRun(bytes);
    EXPECT_EQ(run.number({"DigitalCamera", "MeteringMode"}), 5);
}

TEST_P(SubChain, ThatKeptNoDirectoryIsAnEmptyArray) {
    auto& exif = file_.child().entryAt(37383, 14, 1, 0).shorts(256, {640}).shorts(257, {480});
    file_.image().shorts(274, {6}).sub(34665, exif);
    const ModuleRun run(file_.bytes());
    EXPECT_THAT(run.messages(),
                ElementsAre(Field(&zephra::Message::identifier, "ZEPHRA:veltrace:badTagFormat")));
    ASSERT_TRUE(run.value({"DigitalCamera"}));
    EXPECT_EQ(run.value({"DigitalCamera"}).className(), "double");
    EXPECT_THAT(run.dimensions({"DigitalCamera"}), ElementsAre(0, 0));
    EXPECT_EQ(run.number({"Orientation"}), 6);
}

// The number of fields of a directory has 16 bits. The 22 fallbacks count as well.
TEST(MainChain, DirectoryOf65536FieldsIsDroppedAndTheChainGoesOn) {
    TiffBuilder file;
    for (std::uint32_t i = 1; i <= 65'536 - 22; ++i) {
        file.image().longs(297, {i});
    }
    file.addImage().shorts(274, {6});
    const ModuleRun run = quietRun(file.bytes());
    EXPECT_EQ(run.directories(), 1U);
    EXPECT_EQ(run.number({"Orientation"}), 6);
    EXPECT_FALSE(run.hasField({"PageNumber"}));
}

// In a TIFF file such a directory holds its fallbacks.
TEST(MainChain, DirectoryWhoseEntriesAllFailHasFallbacksAloneAndTheChainGoesOn) {
    const ModuleRun run(
        tiffOf(Dir().entryAt(271, 14, 1, 0).entryAt(274, 15, 1, 0), Dir().shorts(274, {6})));
    EXPECT_THAT(run.warnings(), SizeIs(2));
    EXPECT_FALSE(run.error());
    ASSERT_EQ(run.directories(), 2U);
    EXPECT_FALSE(run.hasField({"Make"}));
    EXPECT_EQ(run.number({"Orientation"}, 0), 1);
    EXPECT_EQ(run.number({"Orientation"}, 1), 6);
}

// JPEG files

TEST(JpegChain, OfImagesIsOneDirectoryToo) {
    TiffBuilder tiff;
    auto& first = tiff.child().shorts(274, {6});
    const auto& second = tiff.child().shorts(274, {8});
    tiff.image().sub(330, first).next(0xFFFF'FFFF);
    first.next(tiff.positionOf(second));
    const ModuleRun run = quietRun(jpegWithExif(tiff.bytes()));
    EXPECT_EQ(run.directories(), 1U);
    EXPECT_THAT(run.dimensions({"SubIFDs"}), ElementsAre(1, 1));
    EXPECT_EQ(run.number({"SubIFDs", "Orientation"}), 6);
}

TEST(JpegChain, DirectoryWhoseEntriesAllFailIsDropped) {
    const ModuleRun run(jpegWithExif(tiffOf(Dir().entryAt(271, 14, 1, 0).entryAt(272, 15, 1, 0))));
    EXPECT_THAT(run.messages(), SizeIs(2));
    EXPECT_FALSE(run.error());
    ASSERT_TRUE(run.output());
    EXPECT_EQ(run.output().className(), "double");
    EXPECT_THAT(run.dimensions({}), ElementsAre(0, 0));
}

TEST(JpegChain, DirectoryOfWidthAndHeightAloneIsDropped) {
    const ModuleRun run =
        quietRun(jpegWithExif(tiffOf(Dir().shorts(256, {640}).shorts(257, {480}))));
    EXPECT_THAT(run.dimensions({}), ElementsAre(0, 0));
}

TEST(JpegChain, DirectoryOfOneUnknownTagIsKept) {
    const ModuleRun run = quietRun(jpegWithExif(tiffOf(Dir().shorts(60'000, {1}))));
    EXPECT_EQ(run.directories(), 1U);
    EXPECT_EQ(run.number({"UnknownTags", "ID"}), 60'000);
}

}  // namespace

}  // namespace veltrace::test
