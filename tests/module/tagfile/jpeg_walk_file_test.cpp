// The walk over the segments of a JPEG file to its first APP1 segment.
#include "support/jpeg_parts.h"
#include "support/module_run.h"

namespace veltrace::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

zephra::Message failure(const ModuleRun& run, const std::string& identifier,
                        const std::string& sentence) {
    return message("ZEPHRA:veltrace:" + identifier,
                   sentence + "the image file \"" + run.fileName() + "\" may be corrupt.");
}

zephra::Message badMarkerRead(const ModuleRun& run) {
    return failure(run, "jpegMarkerReadFailure", "Could not read one of the JPEG markers, ");
}

zephra::Message badMarker(const ModuleRun& run, int prefix) {
    return failure(run, "invalidJpegMarker",
                   "Encountered " + std::to_string(prefix) +
                       " instead of the expected value of 255 for a JPEG marker, ");
}

zephra::Message badHighByte(const ModuleRun& run) {
    return failure(run, "highOrderByteSectionSizeReadFailure",
                   "Could not read the high order byte of the JPEG section size, ");
}

zephra::Message badLowByte(const ModuleRun& run) {
    return failure(run, "lowOrderByteSectionSizeReadFailure",
                   "Could not read the low order byte of the JPEG section size, ");
}

void expectOrientation(const ModuleRun& run, double orientation) {
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_EQ(run.number({"Orientation"}), orientation);
}

TEST(JpegWalk, ReadsTheFirstDirectoryOfExifBehindApp0) {
    expectOrientation(
        ModuleRun(kStartOfImage + segment(0xE0, bytesOf("kiln log")) + app1(kExif, rotatedTiff(6))),
        6);
}

TEST(JpegWalk, SkipsEveryCodeButThreeByItsStatedLength) {
    for (unsigned code = 0; code < 256; ++code) {
        if (code == 0xDA || code == 0xDB || code == 0xE1) {
            continue;
        }
        SCOPED_TRACE(code);
        expectOrientation(
            ModuleRun(kStartOfImage + segment(static_cast<std::uint8_t>(code), {0xFF, 0xDB, 0xFF}) +
                      app1(kExif, rotatedTiff(6))),
            6);
    }
}

TEST(JpegWalk, ReadsTheHighByteOfALengthFirst) {
    expectOrientation(ModuleRun(kStartOfImage + segment(0xE2, Bytes(0x1234, 0xFF)) +
                                segment(0xE2, Bytes(0xFFFD, 0xFF)) + app1(kExif, rotatedTiff(6))),
                      6);
}

TEST(JpegWalk, SegmentMayHaveNoPayload) {
    expectOrientation(ModuleRun(kStartOfImage + segment(0xE0, {}) + app1(kExif, rotatedTiff(6))),
                      6);
}

class QuietEnd : public testing::TestWithParam<std::uint8_t> {};

INSTANTIATE_TEST_SUITE_P(Markers, QuietEnd, testing::Values(0xDA, 0xDB), [](const auto& test) {
    return test.param == 0xDA ? "AtStartOfScan" : "AtQuantizationTables";
});

TEST_P(QuietEnd, AsFirstSegmentGivesNoDirectoryAndNoMessage) {
    const ModuleRun run(kStartOfImage + segment(GetParam(), {1, 2}) + app1(kExif, rotatedTiff(6)));
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_EQ(run.output().className(), "double");
    EXPECT_THAT(run.dimensions({}), ElementsAre(0, 0));
}

TEST_P(QuietEnd, ComesAfterTheLengthWasRead) {
    const ModuleRun withoutLength(kStartOfImage + Bytes{0xFF, GetParam()});
    EXPECT_THAT(withoutLength.messages(), ElementsAre(badHighByte(withoutLength)));
    const ModuleRun halfALength(kStartOfImage + Bytes{0xFF, GetParam(), 0});
    EXPECT_THAT(halfALength.messages(), ElementsAre(badLowByte(halfALength)));
    const ModuleRun lengthAlone(kStartOfImage + Bytes{0xFF, GetParam(), 0, 0});
    EXPECT_THAT(lengthAlone.messages(), IsEmpty());
}

TEST(JpegWalk, FileThatEndsBeforeAMarkerFails) {
    for (const Bytes& rest :
         {Bytes{}, Bytes{0xFF}, segment(0xE0, {1, 2}), segment(0xE0, {1, 2}) + Bytes{0xFF}}) {
        const ModuleRun run(kStartOfImage + rest);
        EXPECT_THAT(run.messages(), ElementsAre(badMarkerRead(run)));
        EXPECT_FALSE(run.output());
    }
}

TEST(JpegWalk, SegmentMayReachPastTheEndAndTheNextMarkerFails) {
    const ModuleRun run(kStartOfImage + Bytes{0xFF, 0xE0, 0xFF, 0xFF, 1, 2, 3});
    EXPECT_THAT(run.messages(), ElementsAre(badMarkerRead(run)));
}

class InvalidPrefix : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Bytes, InvalidPrefix, testing::Values(0, 1, 0x7F, 0xD8, 0xFE));

TEST_P(InvalidPrefix, IsShownAsANumber) {
    const ModuleRun run(kStartOfImage + Bytes{static_cast<std::uint8_t>(GetParam()), 0xE1, 0, 8} +
                        kExif);
    EXPECT_THAT(run.messages(), ElementsAre(badMarker(run, GetParam())));
    EXPECT_FALSE(run.output());
}

TEST(JpegWalk, FileThatEndsInALengthFails) {
    const ModuleRun withoutLength(kStartOfImage + Bytes{0xFF, 0xE1});
    EXPECT_THAT(withoutLength.messages(), ElementsAre(badHighByte(withoutLength)));
    const ModuleRun halfALength(kStartOfImage + Bytes{0xFF, 0xE0, 0});
    EXPECT_THAT(halfALength.messages(), ElementsAre(badLowByte(halfALength)));
}

// A length counts its own two bytes, so a shorter one leads backwards.

TEST(JpegWalk, LengthZeroMovesBackByTwo) {
    const ModuleRun run(kStartOfImage + Bytes{0xFF, 0xE0, 0, 0} + app1(kExif, rotatedTiff(6)));
    EXPECT_THAT(run.messages(), ElementsAre(badMarker(run, 0)));
}

TEST(JpegWalk, LengthOneMovesBackByOneBeforeTheNextMarkerIsRead) {
    const ModuleRun run(kStartOfImage + Bytes{0xFF, 0xE0, 0, 1} + app1(kExif, rotatedTiff(6)));
    EXPECT_THAT(run.messages(), ElementsAre(badMarker(run, 1)));
}

TEST(JpegWalk, StopsAtTheFirstApp1SegmentWhateverItHolds) {
    const ModuleRun run(kStartOfImage + app1(kExif, rotatedTiff(6)) + app1(kExif, rotatedTiff(8)));
    expectOrientation(run, 6);
    EXPECT_EQ(run.directories(), 1U);

    const ModuleRun other(kStartOfImage + app1({'X', 'M', 'P', 0, 0, 0}, bytesOf("<x:kiln/>")) +
                          app1(kExif, rotatedTiff(8)));
    EXPECT_TRUE(other.error());
}

TEST(JpegWalk, StatedLengthOfTheExifSegmentDecidesNothing) {
    for (const std::uint8_t length : Bytes{0, 2, 0xFF}) {
        expectOrientation(
            ModuleRun(kStartOfImage + Bytes{0xFF, 0xE1, 0, length} + kExif + rotatedTiff(6)), 6);
    }
}

}  // namespace

}  // namespace veltrace::test
