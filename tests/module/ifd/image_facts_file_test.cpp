// What a directory remembers of its image while it reads its entries.
#include "support/encodings.h"
#include "support/module_run.h"

namespace veltrace::test {

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class ImageFacts : public testing::TestWithParam<Encoding> {
protected:
    TiffBuilder file_{GetParam().order, GetParam().flavour};
    TiffDirectory& image_ = file_.image();

    [[nodiscard]] ModuleRun quietRun() const {
        ModuleRun run(file_.bytes());
        EXPECT_THAT(run.messages(), IsEmpty());
        return run;
    }
};

INSTANTIATE_TEST_SUITE_P(Encodings, ImageFacts, testing::ValuesIn(kEveryEncoding), encodingName);

TEST_P(ImageFacts, WidthAndHeightAreTheFirstValuesOfTheirTags) {
    image_.shorts(256, {640, 1}).longs(257, {70'000, 2});
    const ModuleRun run = quietRun();
    EXPECT_EQ(run.number({"Width"}), 640);
    EXPECT_EQ(run.number({"Height"}), 70'000);
    EXPECT_THAT(run.fieldNames(), SizeIs(34));
}

TEST_P(ImageFacts, WidthAndHeightMayBeFractions) {
    image_.rationals(256, {{3, 2}}).floats(257, {0.25F});
    const ModuleRun run = quietRun();
    EXPECT_EQ(run.number({"Width"}), 1.5);
    EXPECT_EQ(run.number({"Height"}), 0.25);
}

TEST_P(ImageFacts, WidthAndHeightStayZeroWithoutTheirTags) {
    image_.shorts(274, {6});
    const ModuleRun run = quietRun();
    EXPECT_EQ(run.number({"Width"}), 0);
    EXPECT_EQ(run.number({"Height"}), 0);
}

TEST_P(ImageFacts, LaterWidthWinsAndOneWithoutAValueChangesNothing) {
    image_.shorts(256, {640}).shorts(256, {320}).shorts(256, {}).ascii(256, "wide");
    EXPECT_EQ(quietRun().number({"Width"}), 320);
}

TEST_P(ImageFacts, PhotometricCodeTruncatesTowardZero) {
    image_.doubles(262, {7.9});
    EXPECT_EQ(quietRun().number({"ColorType"}), 7);
}

TEST_P(ImageFacts, NegativePhotometricCodeTruncatesTowardZero) {
    image_.floats(262, {-7.9F});
    EXPECT_EQ(quietRun().number({"ColorType"}), -7);
}

TEST_P(ImageFacts, PhotometricCodeIsInRangeAfterTruncation) {
    image_.doubles(262, {2147483647.5});
    EXPECT_EQ(quietRun().number({"ColorType"}), 2147483647);
}

TEST_P(ImageFacts, PhotometricCodeOutOfRangeIsTheSmallestInteger) {
    for (const double code :
         {2147483648.0, -2147483649.0, 1e300, -1e300, std::numeric_limits<double>::quiet_NaN()}) {
        TiffBuilder file(GetParam().order, GetParam().flavour);
        file.image().doubles(262, {code});
        EXPECT_EQ(ModuleRun(file.bytes()).number({"ColorType"}), -2147483648.0) << code;
    }
}

TEST_P(ImageFacts, PhotometricTagWithoutAValueLeavesTheCode) {
    image_.shorts(262, {2}).shorts(262, {}).ascii(262, "red");
    EXPECT_EQ(quietRun().text({"ColorType"}), "truecolor");
}

TEST_P(ImageFacts, PhotometricCodeIsMinusOneWithoutItsTag) {
    image_.shorts(262, {});
    EXPECT_EQ(quietRun().number({"ColorType"}), -1);
}

// SamplesPerPixel gives the number of default BitsPerSample by the number of its values.

TEST_P(ImageFacts, WithoutBitsAndSamplesPerPixelBitsPerSampleAndMaxSampleValueAreOneEach) {
    image_.shorts(274, {6});
    const ModuleRun run = quietRun();
    EXPECT_THAT(run.numbers({"BitsPerSample"}), ElementsAre(1));
    EXPECT_THAT(run.numbers({"MaxSampleValue"}), ElementsAre(1));
    EXPECT_EQ(run.number({"BitDepth"}), 1);
}

TEST_P(ImageFacts, SamplesPerPixelOfValueThreeAndCountOneIsOneSample) {
    image_.shorts(277, {3});
    const ModuleRun run = quietRun();
    EXPECT_EQ(run.number({"SamplesPerPixel"}), 3);
    EXPECT_THAT(run.numbers({"BitsPerSample"}), ElementsAre(1));
    EXPECT_THAT(run.numbers({"MaxSampleValue"}), ElementsAre(1));
    EXPECT_EQ(run.number({"BitDepth"}), 1);
}

TEST_P(ImageFacts, ThreeSamplesPerPixelAreThreeSamples) {
    image_.shorts(277, {1, 7, 9});
    const ModuleRun run = quietRun();
    EXPECT_THAT(run.numbers({"BitsPerSample"}), ElementsAre(1, 1, 1));
    EXPECT_THAT(run.dimensions({"BitsPerSample"}), ElementsAre(1, 3));
    EXPECT_THAT(run.numbers({"MaxSampleValue"}), ElementsAre(1, 1, 1));
    EXPECT_EQ(run.number({"BitDepth"}), 3);
}

TEST_P(ImageFacts, SamplesPerPixelCountsQuotientsNotTheirParts) {
    image_.rationals(277, {{3, 1}, {3, 1}});
    EXPECT_THAT(quietRun().numbers({"BitsPerSample"}), ElementsAre(1, 1));
}

TEST_P(ImageFacts, SamplesPerPixelWithoutValuesIsNoSample) {
    image_.ascii(277, "three");
    const ModuleRun run = quietRun();
    EXPECT_FALSE(run.value({"BitsPerSample"}));
    EXPECT_FALSE(run.value({"MaxSampleValue"}));
    EXPECT_EQ(run.number({"BitDepth"}), 0);
}

TEST_P(ImageFacts, BitsPerSampleOfTheFileDecidesMaxSampleValueAndBitDepth) {
    image_.shorts(258, {8, 8, 8}).shorts(277, {1});
    const ModuleRun run = quietRun();
    EXPECT_THAT(run.numbers({"BitsPerSample"}), ElementsAre(8, 8, 8));
    EXPECT_THAT(run.numbers({"MaxSampleValue"}), ElementsAre(255, 255, 255));
    EXPECT_EQ(run.number({"BitDepth"}), 24);
}

TEST_P(ImageFacts, LaterBitsPerSampleReplacesTheEarlier) {
    image_.shorts(258, {8, 8, 8}).shorts(258, {4, 4});
    const ModuleRun run = quietRun();
    EXPECT_THAT(run.numbers({"MaxSampleValue"}), ElementsAre(15, 15));
    EXPECT_EQ(run.number({"BitDepth"}), 8);
}

TEST_P(ImageFacts, BitsPerSampleWithoutNumbersHandsOverNone) {
    image_.shorts(258, {8}).ascii(258, "eight");
    const ModuleRun run = quietRun();
    EXPECT_FALSE(run.value({"MaxSampleValue"}));
    EXPECT_EQ(run.number({"BitDepth"}), 0);
}

// An entry that fails was never met.
TEST_P(ImageFacts, FailingBaselineEntryGetsItsFallback) {
    image_.entryAt(258, 14, 1, 8).entryAt(274, 16, 1, 6).entryAt(256, 14, 1, 640);
    const ModuleRun run(file_.bytes());
    EXPECT_THAT(run.messages(), SizeIs(3));
    EXPECT_THAT(run.messages(),
                Each(testing::Field(&zephra::Message::identifier, "ZEPHRA:veltrace:badTagFormat")));
    EXPECT_THAT(run.numbers({"BitsPerSample"}), ElementsAre(1));
    EXPECT_EQ(run.number({"Orientation"}), 1);
    EXPECT_EQ(run.number({"Width"}), 0);
}

}  // namespace

}  // namespace veltrace::test
