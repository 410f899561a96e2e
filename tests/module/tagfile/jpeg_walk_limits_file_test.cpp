// Where the walk over the segments of a JPEG file and the offsets of its Exif block end.
#include "support/file_test.h"
#include "support/jpeg_parts.h"

namespace veltrace::test {

namespace {

// A fill byte is taken for a code, and the marker behind it for a length.

TEST(JpegFillByte, LeadsAsFarAsTheMarkerBehindItStates) {
    // FF FF is a marker, FF E0 a length of 65504.
    Bytes content = kStartOfImage + Bytes{0xFF, 0xFF, 0xFF, 0xE0};
    content.resize(content.size() + 65502);
    expectOrientation(ModuleRun(content + app1(kExif, rotatedTiff(6))), 6);
    const ModuleRun oneByteLater(content + Bytes{0} + app1(kExif, rotatedTiff(6)));
    EXPECT_THAT(oneByteLater.messages(), ElementsAre(badMarker(0, oneByteLater.fileName())));
}

// Lengths that do not count themselves lead back into themselves.

TEST(JpegLength, OfTwoLeadsToTheNextMarker) {
    const Bytes empty = segment(0xE0, {}) + segment(0xD8, {}) + segment(0xD9, {});
    expectOrientation(ModuleRun(kStartOfImage + empty + app1(kExif, rotatedTiff(6))), 6);
}

TEST(JpegLength, OfZeroOrOneEndsTheWalkAtTablesAndScanAllTheSame) {
    for (const std::uint8_t code : Bytes{0xDA, 0xDB}) {
        for (const std::uint8_t length : Bytes{0, 1, 2}) {
            const ModuleRun run = quietRun(kStartOfImage + Bytes{0xFF, code, 0, length} +
                                           app1(kExif, rotatedTiff(6)));
            EXPECT_THAT(run.dimensions({}), ElementsAre(0, 0));
        }
    }
}

TEST(JpegWalkEnd, ExifBehindTablesIsNotRead) {
    const ModuleRun run = quietRun(kStartOfImage + segment(0xE0, bytesOf("kiln")) +
                                   segment(0xDB, {1}) + app1(kExif, rotatedTiff(6)));
    EXPECT_THAT(run.dimensions({}), ElementsAre(0, 0));
}

TEST(JpegIdentifier, MayEndInAnyTwoBytes) {
    for (const Bytes& end :
         {Bytes{0, 0}, Bytes{0, 'X'}, Bytes{'X', 0}, Bytes{'X', 'X'}, Bytes{0xFF, 0xFF}}) {
        expectOrientation(ModuleRun(kStartOfImage + app1(bytesOf("Exif") + end, rotatedTiff(6))),
                          6);
    }
}

TEST(JpegIdentifier, OfFourBytesShiftsTheHeaderByTwo) {
    const ModuleRun run(kStartOfImage + app1(bytesOf("Exif"), rotatedTiff(6)));
    EXPECT_THAT(run.messages(), ElementsAre(badByteOrder(42, 0, run.fileName())));
}

TEST(JpegIdentifier, ThatIsWrongTwiceIsJudgedInTheFirstSegmentAlone) {
    const ModuleRun run(kStartOfImage + app1(bytesOf("first!"), rotatedTiff(6)) +
                        app1(bytesOf("second"), rotatedTiff(8)));
    EXPECT_THAT(run.messages(), ElementsAre(badExifIdentifier("first!", run.fileName())));
    EXPECT_EQ(run.number({"Orientation"}), 6);
}

// Offsets count from the TIFF header, and the end of the segment is no limit to them.

TEST(ExifOffset, MayLeadBehindTheSegment) {
    // The structure is cut behind its first directory; the rest lies in a segment of its own.
    TiffBuilder tiff;
    auto& image = tiff.image().ascii(271, "a long name").nest(34665, Dir().longs(37510, {1, 2, 3}));
    const Bytes all = tiff.bytes();
    const auto table = static_cast<std::ptrdiff_t>(tiff.positionOf(image) + 2 + 2 * 12 + 4);
    const Bytes inside(all.begin(), all.begin() + table);
    const Bytes outside(all.begin() + table, all.end());
    Bytes content = kStartOfImage + app1(kExif, inside) + outside;
    EXPECT_EQ(content[5], 8 + table);  // the segment ends with the table
    const ModuleRun run = quietRun(content);
    EXPECT_EQ(run.text({"Make"}), std::string("a long name\0", 12));
    EXPECT_THAT(run.numbers({"DigitalCamera", "UserComment"}), ElementsAre(1, 2, 3));
}

TEST(ExifOffset, OfTheFirstDirectoryMayLeadBehindTheSegment) {
    const Bytes all = tiffOf(Dir().shorts(274, {6}));
    const Bytes header(all.begin(), all.begin() + 8);
    const Bytes directory(all.begin() + 8, all.end());
    expectOrientation(ModuleRun(kStartOfImage + app1(kExif, header) + directory), 6);
}

class ExifOffsetOutside : public testing::TestWithParam<Order> {};

INSTANTIATE_TEST_SUITE_P(LittleAndBig, ExifOffsetOutside,
                         testing::Values(Order::little, Order::big));

TEST_P(ExifOffsetOutside, TheFileCostsAValueItsEntry) {
    const ModuleRun run(jpegWithExif(
        tiffOf({GetParam()},
               Dir().entryAt(271, 2, 9, 60000).entryAt(50000, 3, 5, 0xFFFFFFF0).shorts(274, {6}))));
    EXPECT_THAT(run.messages(), ElementsAre(unreadableValue("Make", kHeaderPosition + 60000),
                                            unreadableValue(50000, kHeaderPosition + 0xFFFFFFF0)));
    EXPECT_FALSE(run.error());
    EXPECT_EQ(run.number({"Orientation"}), 6);
    EXPECT_FALSE(run.hasField({"Make"}));
}

TEST_P(ExifOffsetOutside, TheFileCostsADirectoryItsPointer) {
    for (const std::uint16_t pointer : std::vector<std::uint16_t>{34665, 34853, 40965}) {
        const ModuleRun run(jpegWithExif(
            tiffOf({GetParam()}, Dir().entryAt(pointer, 4, 1, 60000).shorts(274, {6}))));
        EXPECT_THAT(run.messages(), ElementsAre(unreadableCount(run.fileName())));
        EXPECT_FALSE(run.error());
        EXPECT_THAT(run.fieldNames().back(), "Orientation");
    }
}

// An unreadable count of image directories is an error, also in those that a pointer leads to.
TEST_P(ExifOffsetOutside, TheFileInAPointerToImagesEndsTheCall) {
    const ModuleRun run(
        jpegWithExif(tiffOf({GetParam()}, Dir().entryAt(330, 4, 1, 60000).shorts(274, {6}))));
    EXPECT_THAT(run.messages(), ElementsAre(unreadableCount(run.fileName())));
    EXPECT_TRUE(run.error());
    EXPECT_EQ(run.leftovers(), zephra::Leftovers{});
}

TEST_P(ExifOffsetOutside, TheSegmentMayReachTheLastByteOfTheFile) {
    // The value ends where the file ends; one byte less is too few.
    const Bytes content =
        kStartOfImage + app1(kExif, tiffOf({GetParam()}, Dir().ascii(271, "a long name")));
    EXPECT_EQ(ModuleRun(content).text({"Make"}), std::string("a long name\0", 12));
    const ModuleRun cut(Bytes(content.begin(), content.end() - 1));
    EXPECT_THAT(cut.messages(),
                ElementsAre(unreadableValue("Make", kHeaderPosition + 8 + 2 + 12 + 4)));
}

// The largest table that is read, 5461 entries, in other directories than the first.
TEST(ExifTable, OfTheLargestSizeIsReadInEverySubDirectory) {
    for (const Order order : {Order::little, Order::big}) {
        TiffBuilder tiff(order);
        auto& exif = tiff.child();
        auto& gps = tiff.child();
        for (std::uint32_t i = 1; i <= 5461; ++i) {
            exif.longs(37383, {i});
            gps.longs(18, {i});
        }
        tiff.image().sub(34665, exif).sub(34853, gps);
        const ModuleRun run = quietRun(jpegWithExif(tiff.bytes()));
        EXPECT_EQ(run.number({"DigitalCamera", "MeteringMode"}), 5461);
        EXPECT_EQ(run.number({"GPSInfo", "GPSMapDatum"}), 5461);
    }
}

TEST(ExifTable, OfTheLargestSizeIsReadWholeOrNotAtAll) {
    const ModuleRun run(jpegWithExif(tiffOf(Dir().shorts(274, {6}).statedCount(5461))));
    EXPECT_THAT(run.messages(), ElementsAre(unreadableTable("IFD table #0")));
    EXPECT_FALSE(run.output());
}

}  // namespace

}  // namespace veltrace::test
