// What a directory reports of its image: its size, its colours and the bits of its samples.
#include "support/file_test.h"
#include "vocabulary/tables.h"

namespace veltrace::test {

namespace {

TEST(ImageFacts, WidthAndHeightAreTheFirstValuesOfTheirTags) {
    expectShown({
        {Dir().shorts(256, {640, 1}).longs(257, {70'000, 2}), "Width Height", "640; 70000"},
        {Dir().rationals(256, {{3, 2}}).floats(257, {0.25F}), "Width Height", "1.5; 0.25"},
        {Dir().shorts(274, {6}), "Width Height", "0; 0"},
        {Dir().shorts(256, {640}).shorts(256, {320}).shorts(256, {}).ascii(256, "wide"), "Width",
         "320"},
        {Dir().shorts(257, {480}).rawAscii(257, "9"), "Width Height", "0; 480"},
    });
    expectShownInJpeg({{Dir().shorts(271, {1}), "Width Height", "0; 0"}});
}

TEST(ImageFacts, OfSizeAddNoField) {
    EXPECT_THAT(ModuleRun(tiffOf(Dir().shorts(256, {640}).shorts(257, {480}))).fieldNames(),
                testing::SizeIs(34));
}

TEST(ColorType, IsAWordForEachKnownPhotometricCode) {
    for (const WordRow& row : kColorTypes) {
        expectShown(
            {{Dir().signedLongs(262, {row.code}), "ColorType", "'" + std::string(row.word) + "'"}});
    }
    expectShownInJpeg({{Dir().shorts(262, {6}), "ColorType", "'YCbCr'"}});
}

TEST(ColorType, IsTheNumberOfEveryOtherCode) {
    for (const std::int32_t code :
         {7, 11, 12, 255, 32802, 32804, 32843, 32846, 34891, 34893, 65535, -1, -2, 2147483647}) {
        expectShown({{Dir().signedLongs(262, {code}), "ColorType", std::to_string(code)}});
    }
}

TEST(ColorType, TruncatesThePhotometricCode) {
    const std::pair<double, const char*> codes[] = {{7.9, "7"},
                                                    {-1.9, "-1"},
                                                    {-7.9, "-7"},
                                                    {2147483647.5, "2147483647"},
                                                    {2147483648.0, "-2147483648"},
                                                    {-2147483649.0, "-2147483648"},
                                                    {1e300, "-2147483648"},
                                                    {-1e300, "-2147483648"},
                                                    {kNaN, "-2147483648"}};
    for (const auto& code : codes) {
        expectShown({{Dir().doubles(262, {code.first}), "ColorType", code.second}});
    }
}

TEST(ColorType, IsMinusOneOrThatOfAnEarlierTagWithoutANumber) {
    expectShown({
        {Dir().shorts(271, {1}), "ColorType", "-1"},
        {Dir().shorts(262, {}), "ColorType", "-1"},
        {Dir().rawAscii(262, "2"), "ColorType", "-1"},
        {Dir().shorts(262, {2}).shorts(262, {}), "ColorType", "'truecolor'"},
        {Dir().shorts(262, {2}).ascii(262, "red"), "ColorType", "'truecolor'"},
    });
}

TEST(ColorType, IsIndexedWithAColormapWhateverThePhotometricCode) {
    expectShown({
        {Dir().shorts(262, {3}).shorts(320, {0, 0, 0}), "ColorType", "'indexed'"},
        {Dir().shorts(262, {2}).shorts(320, {0, 0, 0}), "ColorType", "'indexed'"},
        {Dir().shorts(320, {}), "ColorType", "'indexed'"},
    });
}

TEST(ColorType, IsNotIndexedWhereOnlyAnotherDirectoryHasAColormap) {
    EXPECT_EQ(
        ModuleRun(tiffOf(Dir().shorts(262, {3}).shorts(320, {0, 0, 0}), Dir().shorts(262, {3})))
            .text({"ColorType"}, 1),
        "RGB Palette");
}

constexpr const char* kBits = "BitsPerSample MaxSampleValue BitDepth";

TEST(BitDepth, IsTheSumOfTheBitsOfAllSamplesSo24ForThreeOfEight) {
    expectShown({
        {Dir().shorts(258, {8, 8, 8}).shorts(277, {1}), kBits,
         "1x3 [8 8 8]; 1x3 [255 255 255]; 24"},
        {Dir().shorts(258, {1, 16}), kBits, "1x2 [1 16]; 1x2 [1 65535]; 17"},
        {Dir().doubles(258, {0.5, 2.25}), "BitDepth", "2.75"},
        {Dir().doubles(258, {-0.0, -0.0}), "BitDepth", "0"},
        {Dir().shorts(258, {8, 8, 8}).shorts(258, {4, 4}), "MaxSampleValue BitDepth",
         "1x2 [15 15]; 8"},
        {Dir().shorts(258, {8}).ascii(258, "eight"), "MaxSampleValue BitDepth", "none; 0"},
        {Dir().shorts(258, {}), kBits, "none; none; 0"},
    });
    expectShownInJpeg({{Dir().shorts(271, {1}), "BitDepth", "0"}});
}

// Kept: SamplesPerPixel gives the number of fallback bits by the number of its values.
TEST(BitDepth, IsOneForEachValueOfSamplesPerPixelWithoutBits) {
    expectShown({
        {Dir().shorts(274, {6}), kBits, "1; 1; 1"},
        {Dir().shorts(277, {3}), kBits, "1; 1; 1"},
        {Dir().shorts(277, {9, 7, 9}), kBits, "1x3 [1 1 1]; 1x3 [1 1 1]; 3"},
        {Dir().rationals(277, {{3, 1}, {3, 1}}), kBits, "1x2 [1 1]; 1x2 [1 1]; 2"},
        {Dir().shorts(277, {}), kBits, "none; none; 0"},
        {Dir().ascii(277, "three"), kBits, "none; none; 0"},
    });
}

TEST(BitDepth, CountsMoreSamplesThan16BitsCan) {
    const ModuleRun run = quietRun(tiffOf(Dir().bytes(277, std::vector<std::uint8_t>(65'539, 1))));
    EXPECT_THAT(run.numbers({"BitsPerSample"}), testing::SizeIs(65'539));
    EXPECT_EQ(run.number({"BitDepth"}), 65'539);
}

// An entry that fails was never met.
TEST(ImageFacts, OfFailingEntriesAreThoseOfMissingOnes) {
    expectShown({
        {Dir().entryAt(258, 14, 1, 8).entryAt(274, 16, 1, 6).entryAt(256, 14, 1, 640),
         "BitsPerSample Orientation Width",
         "1; 1; 0",
         {badType(258, 14), badType(274, 16), badType(256, 14)}},
    });
}

}  // namespace

}  // namespace veltrace::test
