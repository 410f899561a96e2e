// The Exif segment of a JPEG file and the TIFF structure in it.
#include "support/jpeg_parts.h"
#include "support/module_run.h"

namespace veltrace::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t kHeaderPosition = 12;  // SOI, marker, length and identifier come before it

std::string quotedName(const ModuleRun& run) {
    return "\"" + run.fileName() + "\" ";
}

zephra::Message badIdentifier(const ModuleRun& run, const std::string& shown) {
    return message("ZEPHRA:veltrace:badJpegExifHeaderValue",
                   "The JPEG Exif header reads as \"" + shown +
                       "\" instead of \"Exif  \", the image file " + quotedName(run) +
                       "may be corrupt.");
}

class ExifOrder : public testing::TestWithParam<Order> {};

INSTANTIATE_TEST_SUITE_P(LittleAndBig, ExifOrder, testing::Values(Order::little, Order::big));

TEST_P(ExifOrder, OffsetsCountFromTheTiffHeader) {
    TiffBuilder tiff(GetParam());
    auto& exif = tiff.child();
    auto& interoperability = tiff.child().ascii(1, "R98 of the kiln");
    exif.rationals(33434, {{1, 8}}).sub(40965, interoperability);
    auto& gps = tiff.child().ascii(29, "2019:07:05");
    tiff.image().ascii(271, "Kiln & Sons").sub(34665, exif).sub(34853, gps);
    const ModuleRun run(kStartOfImage + segment(0xE0, Bytes(301, 0xEE)) +
                        app1(kExif, tiff.bytes()));
    EXPECT_THAT(run.messages(), IsEmpty());
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
        const ModuleRun run(jpegWithExif(tiff.bytes()));
        EXPECT_THAT(run.messages(), IsEmpty());
        EXPECT_EQ(run.number({"Orientation"}), 6);
    }
}

TEST_P(ExifOrder, OnlyTheFirstDirectoryIsRead) {
    TiffBuilder tiff(GetParam());
    tiff.image().shorts(274, {6});
    tiff.addImage().shorts(274, {8});
    const ModuleRun run(jpegWithExif(tiff.bytes()));
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_EQ(run.directories(), 1U);
    EXPECT_EQ(run.number({"Orientation"}), 6);
}

TEST(ExifIdentifier, LastTwoBytesAreIgnored) {
    const ModuleRun run(kStartOfImage + app1(bytesOf("Exif!?"), rotatedTiff(6)));
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_EQ(run.number({"Orientation"}), 6);
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
    EXPECT_THAT(run.warnings(), ElementsAre(badIdentifier(run, GetParam().shown)));
    EXPECT_FALSE(run.error());
    EXPECT_EQ(run.number({"Orientation"}), 6);
}

TEST(ExifIdentifier, OfXmpIsAWarningFollowedByTheErrorOfTheHeader) {
    const ModuleRun run(kStartOfImage + app1({'X', 'M', 'P', 0, 0, 0}, bytesOf("<x:kiln/>")));
    EXPECT_THAT(
        run.messages(),
        ElementsAre(badIdentifier(run, "XMP"),
                    message("ZEPHRA:veltrace:badEndianness",
                            "The endian signature [60 120] of " + quotedName(run) +
                                " is neither [77 77] (big-endian) nor [73 73] (little-endian),the "
                                "image file may be corrupt.")));
}

TEST(ExifIdentifier, ThatIsTruncatedFails) {
    for (std::size_t length = 0; length < 6; ++length) {
        const Bytes part(kExif.begin(), kExif.begin() + static_cast<std::ptrdiff_t>(length));
        const ModuleRun run(kStartOfImage + Bytes{0xFF, 0xE1, 0, 8} + part);
        EXPECT_THAT(run.messages(),
                    ElementsAre(message("ZEPHRA:veltrace:badJpegExifHeaderRead",
                                        "Unable to read the JPEG Exif header, the image file " +
                                            quotedName(run) + "may be corrupt.")));
        EXPECT_FALSE(run.output());
    }
}

// The TIFF header of the segment. Identifiers are the classic ones.

TEST(ExifHeader, WithMixedByteOrderMarkFails) {
    const ModuleRun run(kStartOfImage + app1(kExif, {'I', 'M', 42, 0, 8, 0, 0, 0}));
    EXPECT_THAT(
        run.messages(),
        ElementsAre(message("ZEPHRA:veltrace:badEndianness",
                            "The endian signature [73 77] of " + quotedName(run) +
                                " is neither [77 77] (big-endian) nor [73 73] (little-endian),the "
                                "image file may be corrupt.")));
}

TEST(ExifHeader, ThatIsTruncatedFailsInTheFieldThatIsCut) {
    const Bytes header{'M', 'M', 0, 42, 0, 0, 0, 8};
    for (std::size_t length = 0; length < header.size(); ++length) {
        const Bytes part(header.begin(), header.begin() + static_cast<std::ptrdiff_t>(length));
        const ModuleRun run(kStartOfImage + app1(kExif, part));
        const zephra::Message mark =
            message("ZEPHRA:veltrace:tiffHeaderEndianReadFailure",
                    "Could not read TIFF header byte order the image file " + quotedName(run) +
                        "may be corrupt.");
        const zephra::Message version =
            message("ZEPHRA:veltrace:badTiffHeaderVersionRead",
                    "Could not read TIFF header version number, the image may be corrupt.");
        const zephra::Message offset = message("ZEPHRA:veltrace:badTiffHeaderOffsetRead",
                                               "Could not read the location of the first TIFF tag "
                                               "table, the image may be corrupt.");
        EXPECT_THAT(run.messages(), ElementsAre(length < 2 ? mark : length < 4 ? version : offset));
    }
}

TEST(ExifHeader, FirstOffsetAtTheEndOfTheFilePassesAndTheCountFails) {
    const ModuleRun run(kStartOfImage + app1(kExif, TiffBuilder().firstOffset(8).bytes()));
    EXPECT_THAT(run.messages(),
                ElementsAre(message("ZEPHRA:veltrace:numIfdEntriesReadError",
                                    "Unable to read the number of entries in one of the image file "
                                    "directories, the metadata in " +
                                        quotedName(run) + "may be corrupt.")));
}

TEST(ExifHeader, FirstOffsetPastTheEndOfTheFileCountsFromTheHeader) {
    const ModuleRun run(kStartOfImage + app1(kExif, TiffBuilder().firstOffset(9).bytes()));
    EXPECT_THAT(run.messages(),
                ElementsAre(message("ZEPHRA:veltrace:badTiffIfdOffset",
                                    "The indicated starting byte of the first image file directory "
                                    "(21) exceeds the image file size (20), the image may be "
                                    "corrupt.")));
}

TEST(ExifDirectory, WithoutEntriesIsReportedAtItsPositionInTheFile) {
    TiffBuilder tiff;
    tiff.image();
    const ModuleRun run(jpegWithExif(tiff.bytes()));
    EXPECT_THAT(run.messages(),
                ElementsAre(message("ZEPHRA:veltrace:zeroLengthIfdTable",
                                    "The image file directory at byte position " +
                                        std::to_string(kHeaderPosition + 8) +
                                        " has zero entries and is being ignored.")));
}

}  // namespace

}  // namespace veltrace::test
