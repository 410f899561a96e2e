// The walk over the segments of a JPEG file to its first APP1 segment.
#include <functional>

#include "support/file_test.h"
#include "support/jpeg_parts.h"

namespace veltrace::test {

namespace {

zephra::Message unreadableLengthByte(const std::string& which, const std::string& fileName) {
    return message("ZEPHRA:veltrace:" + which + "OrderByteSectionSizeReadFailure",
                   "Could not read the " + which + " order byte of the JPEG section size, " +
                       "the image file \"" + fileName + "\" may be corrupt.");
}

zephra::Message unreadableHighByte(const std::string& fileName) {
    return unreadableLengthByte("high", fileName);
}

zephra::Message unreadableLowByte(const std::string& fileName) {
    return unreadableLengthByte("low", fileName);
}

/// Of a file that has these bytes behind the start of image.
void expectWalkError(const Bytes& rest,
                     const std::function<zephra::Message(const std::string&)>& expected) {
    const ModuleRun run(kStartOfImage + rest);
    EXPECT_THAT(run.messages(), ElementsAre(expected(run.fileName())));
    EXPECT_FALSE(run.output());
    EXPECT_EQ(run.leftovers(), zephra::Leftovers{});
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

class QuietEnd : public testing::TestWithParam<std::uint8_t> {};

INSTANTIATE_TEST_SUITE_P(Markers, QuietEnd, testing::Values(0xDA, 0xDB), [](const auto& test) {
    return test.param == 0xDA ? "AtStartOfScan" : "AtQuantizationTables";
});

TEST_P(QuietEnd, AsFirstSegmentGivesNoDirectoryAndNoMessage) {
    const ModuleRun run =
        quietRun(kStartOfImage + segment(GetParam(), {1, 2}) + app1(kExif, rotatedTiff(6)));
    EXPECT_EQ(run.output().className(), "double");
    EXPECT_THAT(run.dimensions({}), ElementsAre(0, 0));
}

TEST_P(QuietEnd, NeedsTheLengthOfItsSegment) {
    expectWalkError({0xFF, GetParam()}, unreadableHighByte);
    expectWalkError({0xFF, GetParam(), 0}, unreadableLowByte);
    EXPECT_THAT(ModuleRun(kStartOfImage + Bytes{0xFF, GetParam(), 0, 0}).messages(), IsEmpty());
}

TEST(JpegWalk, FailsWhereThereIsNoWholeMarker) {
    const Bytes exif = app1(kExif, rotatedTiff(6));
    expectWalkError({}, unreadableMarker);
    expectWalkError({0xFF}, unreadableMarker);
    expectWalkError(segment(0xE0, {1, 2}), unreadableMarker);
    expectWalkError(segment(0xE0, {1, 2}) + Bytes{0xFF}, unreadableMarker);
    expectWalkError(segment(0xE0, {}) + segment(0xD8, {}) + segment(0xD9, {}), unreadableMarker);
    expectWalkError({0xFF, 0xE0, 0xFF, 0xFF, 1, 2, 3}, unreadableMarker);  // past the end
    // A fill byte is taken for a code, and the marker behind it for a length.
    expectWalkError(Bytes{0xFF} + exif, unreadableMarker);
    expectWalkError(Bytes{0xFF, 0xFF} + exif, unreadableMarker);
}

TEST(JpegWalk, ShowsTheByteThatIsNoMarkerAsANumber) {
    for (const int prefix : {0, 1, 0x7F, 0xD8, 0xFE}) {
        expectWalkError(Bytes{static_cast<std::uint8_t>(prefix), 0xE1, 0, 8} + kExif,
                        [prefix](const std::string& name) { return badMarker(prefix, name); });
    }
}

TEST(JpegWalk, FailsWhereThereIsNoWholeLength) {
    expectWalkError({0xFF, 0xE1}, unreadableHighByte);
    expectWalkError({0xFF, 0xE0, 0}, unreadableLowByte);
}

// A length counts its own two bytes, so a shorter one leads backwards.
TEST(JpegWalk, MovesBackAtALengthOfZeroOrOne) {
    const Bytes exif = app1(kExif, rotatedTiff(6));
    const auto zeroIsNoMarker = [](const std::string& name) { return badMarker(0, name); };
    expectWalkError(Bytes{0xFF, 0xE0, 0, 0} + exif, zeroIsNoMarker);
    expectWalkError({0xFF, 0xE0, 0, 0}, zeroIsNoMarker);
    expectWalkError(Bytes{0xFF, 0xE0, 0, 1} + exif,
                    [](const std::string& name) { return badMarker(1, name); });
    expectWalkError({0xFF, 0xE0, 0, 1}, unreadableMarker);
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
    for (const std::uint8_t length : Bytes{0, 1, 2, 0xFF}) {
        expectOrientation(
            ModuleRun(kStartOfImage + Bytes{0xFF, 0xE1, 0, length} + kExif + rotatedTiff(6)), 6);
    }
}

}  // namespace

}  // namespace veltrace::test
