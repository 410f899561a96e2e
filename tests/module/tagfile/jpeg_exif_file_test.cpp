// The Exif segment of a JPEG file and the TIFF structure in it.
#include "support/file_test.h"
#include "support/jpeg_parts.h"

namespace veltrace::test {

namespace {

class ExifOrder : public testing::TestWithParam<Order> {};

INSTANTIATE_TEST_SUITE_P(LittleAndBig, ExifOrder, testing::Values(Order::little, Order::big));

TEST_P(ExifOrder, OffsetsCountFromTheTiffHeader) {
    TiffBuilder tiff(GetParam());
    auto& exif = tiff.child();
    exif.rationals(33434, {{1, 8}}).nest(40965, Dir().ascii(1, "R98 of the kiln"));
    tiff.image()
        .ascii(271, "Kiln & Sons")
        .sub(34665, exif)
        .nest(34853, Dir().ascii(29, "2019:07:05"));
    const ModuleRun run =
        quietRun(kStartOfImage + segment(0xE0, Bytes(301, 0xEE)) + app1(kExif, tiff.bytes()));
    EXPECT_EQ(run.directories(), 1U);
    EXPECT_EQ(run.text({"Make"}), std::string("Kiln & Sons\0", 12));
    EXPECT_EQ(run.number({"DigitalCamera", "ExposureTime"}), 0.125);
    EXPECT_EQ(run.text({"DigitalCamera", "InteroperabilityIFD", "InteroperabilityIndex"}),
              std::string("R98 of the kiln\0", 16));
    EXPECT_EQ(run.text({"GPSInfo", "GPSDateStamp"}), std::string("2019:07:05\0", 11));
}

TEST_P(ExifOrder, VersionIsNotCompared) {
    for (const std::uint16_t version : std::vector<std::uint16_t>{0, 43, 0xFFFF}) {
        TiffBuilder tiff(GetParam());
        tiff.version(version).image().shorts(274, {6});
        expectOrientation(ModuleRun(jpegWithExif(tiff.bytes())), 6);
    }
}

TEST_P(ExifOrder, OnlyTheFirstDirectoryIsRead) {
    const ModuleRun run = quietRun(
        jpegWithExif(tiffOf({GetParam()}, Dir().shorts(274, {6}), Dir().shorts(274, {8}))));
    EXPECT_EQ(run.directories(), 1U);
    EXPECT_EQ(run.number({"Orientation"}), 6);
}

TEST(ExifIdentifier, LastTwoBytesAreIgnored) {
    expectOrientation(ModuleRun(kStartOfImage + app1(bytesOf("Exif!?"), rotatedTiff(6))), 6);
}

struct IdentifierCase {
    Bytes identifier;
    std::string shown;
};

class WrongIdentifier : public testing::TestWithParam<IdentifierCase> {};

INSTANTIATE_TEST_SUITE_P(Identifiers, WrongIdentifier,
                         testing::Values(IdentifierCase{{'X', 'M', 'P', 0, 'k', 'i'}, "XMP"},
                                         IdentifierCase{{'E', 'X', 'I', 'F', 0, 0}, "EXIF"},
                                         IdentifierCase{{'E', 'x', 'i', 'g', 0, 0}, "Exig"},
                                         IdentifierCase{{'E', 'x', 'i', 0, 'f', 0}, "Exi"},
                                         IdentifierCase{{0, 'E', 'x', 'i', 'f', 0}, ""},
                                         IdentifierCase{bytesOf("abcde"), "abcde"},
                                         IdentifierCase{bytesOf("abcdef"), "abcdef"},
                                         IdentifierCase{bytesOf("%s%n%d"), "%s%n%d"},
                                         IdentifierCase{{0x80, 0xFF, 'a', 0, 0, 0},
                                                        "\x80\xFF"
                                                        "a"}));

TEST_P(WrongIdentifier, IsAWarningAndTheReadGoesOn) {
    Bytes identifier = GetParam().identifier;
    identifier.resize(6);
    const ModuleRun run(kStartOfImage + app1(identifier, rotatedTiff(6)));
    EXPECT_THAT(run.warnings(), ElementsAre(badExifIdentifier(GetParam().shown, run.fileName())));
    EXPECT_FALSE(run.error());
    EXPECT_EQ(run.number({"Orientation"}), 6);
}

TEST(ExifIdentifier, OfXmpIsAWarningFollowedByTheErrorOfTheHeader) {
    const ModuleRun run(kStartOfImage + app1({'X', 'M', 'P', 0, 0, 0}, bytesOf("<x:kiln/>")));
    EXPECT_THAT(run.messages(), ElementsAre(badExifIdentifier("XMP", run.fileName()),
                                            badByteOrder(60, 120, run.fileName())));
}

TEST(ExifIdentifier, ThatIsTruncatedFails) {
    for (std::size_t length = 0; length < 6; ++length) {
        const Bytes part(kExif.begin(), kExif.begin() + static_cast<std::ptrdiff_t>(length));
        const ModuleRun run(kStartOfImage + Bytes{0xFF, 0xE1, 0, 8} + part);
        EXPECT_THAT(run.messages(),
                    ElementsAre(message("ZEPHRA:veltrace:badJpegExifHeaderRead",
                                        "Unable to read the JPEG Exif header, the image file \"" +
                                            run.fileName() + "\" may be corrupt.")));
        EXPECT_FALSE(run.output());
    }
}

// The TIFF header of the segment. Identifiers are the classic ones.

TEST(ExifHeader, WithMixedByteOrderMarkFails) {
    const ModuleRun run(kStartOfImage + app1(kExif, {'I', 'M', 42, 0, 8, 0, 0, 0}));
    EXPECT_THAT(run.messages(), ElementsAre(badByteOrder(73, 77, run.fileName())));
}

TEST(ExifHeader, ThatIsTruncatedFailsInTheFieldThatIsCut) {
    const Bytes header{'M', 'M', 0, 42, 0, 0, 0, 8};
    for (std::size_t length = 0; length < header.size(); ++length) {
        const Bytes part(header.begin(), header.begin() + static_cast<std::ptrdiff_t>(length));
        const ModuleRun run(kStartOfImage + app1(kExif, part));
        const zephra::Message mark = unreadableByteOrder(run.fileName());
        const zephra::Message version =
            message("ZEPHRA:veltrace:badTiffHeaderVersionRead",
                    "Could not read TIFF header version number, the image may be corrupt.");
        const zephra::Message offset = unreadableFirstOffset();
        EXPECT_THAT(run.messages(), ElementsAre(length < 2 ? mark : length < 4 ? version : offset));
    }
}

TEST(ExifHeader, FirstOffsetAtTheEndOfTheFilePassesAndTheCountFails) {
    const ModuleRun run(kStartOfImage + app1(kExif, TiffBuilder().firstOffset(8).bytes()));
    EXPECT_THAT(run.messages(), ElementsAre(unreadableCount(run.fileName())));
}

TEST(ExifHeader, FirstOffsetPastTheEndOfTheFileCountsFromTheHeader) {
    const ModuleRun run(kStartOfImage + app1(kExif, TiffBuilder().firstOffset(9).bytes()));
    EXPECT_THAT(run.messages(), ElementsAre(firstOffsetPastTheEnd(21, 20)));
}

TEST(ExifDirectory, WithoutEntriesIsReportedAtItsPositionInTheFile) {
    const ModuleRun run(jpegWithExif(tiffOf(Dir())));
    EXPECT_THAT(run.messages(), ElementsAre(zeroEntries(kHeaderPosition + 8)));
}

}  // namespace

}  // namespace veltrace::test
