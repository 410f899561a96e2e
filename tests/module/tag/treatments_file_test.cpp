// Tags whose values become something else than a word, and the directories where this happens.
#include "support/file_test.h"

namespace veltrace::test {

namespace {

using namespace std::string_view_literals;

TEST(ImageDescription, LosesItsLastCharacterWhateverItIs) {
    expectShown({
        {Dir().ascii(270, "a kiln"), "ImageDescription", "'a kiln'"},
        {Dir().rawAscii(270, "one\0two"sv), "ImageDescription", "'one\\0tw'"},
        {Dir().rawAscii(270, "\0"sv), "ImageDescription", "none"},
        {Dir().rawAscii(270, ""), "ImageDescription", "none"},
        {Dir().bytes(270, {65, 66, 0}), "ImageDescription", "3x1 [65 66 0]"},
    });
}

TEST(GrayResponseUnit, BecomesItsMultiplier) {
    expectShown({
        {Dir().shorts(290, {1}), "GrayResponseUnit", "0.1"},
        {Dir().shorts(290, {2}), "GrayResponseUnit", "0.01"},
        {Dir().shorts(290, {3}), "GrayResponseUnit", "0.001"},
        {Dir().shorts(290, {4}), "GrayResponseUnit", "1e-04"},
        {Dir().shorts(290, {5}), "GrayResponseUnit", "1e-05"},
        {Dir().shorts(290, {3, 4}), "GrayResponseUnit", "2x1 [0.001 4]"},
        {Dir().floats(290, {5.9F}), "GrayResponseUnit", "1e-05"},
    });
}

TEST(GrayResponseUnit, IsUnknownForEveryOtherCode) {
    for (const double code : {0.0, -1.0, 6.0, 7.0, 100000.0, -2147483648.0, 0.9, -0.9, kNaN}) {
        expectShown({{Dir().doubles(290, {code}), "GrayResponseUnit", "'Unknown'"}});
    }
}

TEST(GrayResponseUnit, IsLeftAloneWithoutANumber) {
    expectShown({
        {Dir().shorts(290, {}), "GrayResponseUnit", "none"},
        {Dir().rawAscii(290, "3"), "GrayResponseUnit", "'3'"},
    });
}

TEST(Xmp, BecomesTextWithTheLowByteOfEachNumber) {
    expectShown({
        {Dir().bytes(700, {'<', 'x', 0, 0xE9, '>'}), "XMP", "'<x\\0\\xE9>'"},
        {Dir().undefined(700, {'<', '/', '>', 0}), "XMP", "'</>\\0'"},
        {Dir().signedLongs(700, {321, -191, 65601}), "XMP", "'AAA'"},
        {Dir().doubles(700, {65.9, kNaN, 4294967361.0, 66}), "XMP", "'A\\0\\0B'"},
        {Dir().rationals(700, {{130, 2}, {133, 2}}), "XMP", "'AB'"},
        {Dir().ascii(700, "<x/>"), "XMP", "'<x/>\\0'"},
        {Dir().bytes(700, {}), "XMP", "none"},
    });
}

TEST(IccProfile, IsReportedAsItsOffsetFromTheHeader) {
    const Bytes file = tiffOf(Dir().undefined(34675, {1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(ModuleRun(file).number({"ICCProfileOffset"}), 26);
    EXPECT_EQ(ModuleRun(jpegWithExif(file)).number({"ICCProfileOffset"}), 26);
}

TEST(IccProfile, HasOffsetZeroInsideItsEntryAndKeepsAText) {
    expectShown({
        {Dir().undefined(34675, {1, 2, 3, 4}), "ICCProfileOffset", "0"},
        {Dir().undefined(34675, {}), "ICCProfileOffset", "0"},
        {Dir().rawAscii(34675, "profile"), "ICCProfileOffset", "'profile'"},
    });
}

TEST(IccProfile, HasAPositiveOffsetBeyondTwoGigabytes) {
    constexpr std::uint32_t kFarAway = 4'000'000'000;
    const MemoryFile memory(tiffOf(Dir().entryAt(34675, 7, 6, kFarAway)));
    memory.put(kFarAway, {1, 2, 3, 4, 5, 6});
    const ModuleRun run = quietRun(memory);
    EXPECT_EQ(run.number({"ICCProfileOffset"}), 4'000'000'000.0);
}

TiffDirectory withEveryTreatedTag() {
    return Dir()
        .shorts(259, {5})
        .shorts(262, {2})
        .rawAscii(270, "ABC")
        .shorts(284, {2})
        .shorts(290, {3})
        .shorts(296, {3})
        .shorts(317, {2})
        .shorts(332, {2})
        .shorts(320, {65535, 0, 13107})
        .shorts(339, {3})
        .shorts(512, {14})
        .shorts(531, {2})
        .bytes(700, {'<', '>'})
        .undefined(34675, {9, 8});
}

TEST(Treatments, ApplyInExifDirectories) {
    const ModuleRun run = quietRun(jpegWithExif(tiffOf(Dir().nest(34665, withEveryTreatedTag()))));
    const std::pair<const char*, const char*> treated[] = {
        {"Compression", "'LZW'"},
        {"PhotometricInterpretation", "'RGB'"},
        {"ImageDescription", "'AB'"},
        {"PlanarConfiguration", "'Planar'"},
        {"GrayResponseUnit", "0.001"},
        {"ResolutionUnit", "'Centimeter'"},
        {"Predictor", "'Horizontal differencing'"},
        {"InkSet", "'not CMYK'"},
        {"Colormap", "1x3 [1 0 0.2]"},
        {"SampleFormat", "'IEEE floating point'"},
        {"JPEGProc", "'Lossless process with Huffman coding'"},
        {"YCbCrPositioning", "'Co-sited'"},
        {"XMP", "'<>'"},
        {"ICCProfileOffset", "0"}};
    for (const auto& [field, value] : treated) {
        EXPECT_EQ(shown(run.value({"DigitalCamera", field})), value) << field;
    }
}

class UntreatedDirectories : public ::testing::TestWithParam<std::uint16_t> {};

TEST_P(UntreatedDirectories, OfGpsAndInteroperabilityReportTheSameTagsAsTheyAre) {
    const ModuleRun run = quietRun(tiffOf(Dir().nest(GetParam(), withEveryTreatedTag())));
    const zephra::Value unknown =
        run.value({GetParam() == 34853 ? "GPSInfo" : "InteroperabilityIFD", "UnknownTags"});
    ASSERT_EQ(unknown.size(), 14U);
    const char* const values[] = {
        "5", "2",  "'ABC'", "2",           "3",        "3", "2", "2", "3x1 [65535 0 13107]",
        "3", "14", "2",     "2x1 [60 62]", "2x1 [9 8]"};
    for (std::size_t i = 0; i < std::size(values); ++i) {
        EXPECT_EQ(shown(unknown.field(i, "Value")), values[i]) << i;
    }
}

INSTANTIATE_TEST_SUITE_P(GpsAndInteroperability, UntreatedDirectories,
                         ::testing::Values(std::uint16_t{34853}, std::uint16_t{40965}));

}  // namespace

}  // namespace veltrace::test
