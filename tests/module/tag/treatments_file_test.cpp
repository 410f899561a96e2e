// Tags whose values become something else than a word, and where tags are treated at all.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <string_view>

#include "support/module_run.h"
#include "support/tiff_builder.h"

namespace veltrace::test {

namespace {

using namespace std::string_view_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ImageDescription, LosesItsLastCharacter) {
    TiffBuilder file;
    file.image().ascii(270, "a kiln");
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_EQ(run.text({"ImageDescription"}), "a kiln");
    EXPECT_THAT(run.dimensions({"ImageDescription"}), ElementsAre(1, 6));
}

TEST(ImageDescription, LosesItsLastCharacterWhateverItIs) {
    TiffBuilder file;
    file.image().rawAscii(270, "one\0two"sv);
    EXPECT_EQ(ModuleRun(file.bytes()).text({"ImageDescription"}), "one\0tw"sv);
}

TEST(ImageDescription, OfOneCharacterIsNoValue) {
    TiffBuilder file;
    file.image().rawAscii(270, "\0"sv);
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_TRUE(run.hasField({"ImageDescription"}));
    EXPECT_FALSE(run.value({"ImageDescription"}));
}

TEST(ImageDescription, OfNoCharactersIsNoValue) {
    TiffBuilder file;
    file.image().rawAscii(270, "");
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_FALSE(run.value({"ImageDescription"}));
}

TEST(ImageDescription, OfNumbersKeepsThemAll) {
    TiffBuilder file;
    file.image().bytes(270, {65, 66, 0});
    EXPECT_THAT(ModuleRun(file.bytes()).numbers({"ImageDescription"}), ElementsAre(65, 66, 0));
}

TEST(GrayResponseUnit, Of3IsOneThousandthAndOf0IsTheTextUnknown) {
    TiffBuilder file;
    file.image().shorts(290, {3});
    file.addImage().shorts(290, {0});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_EQ(run.number({"GrayResponseUnit"}, 0), 0.001);
    EXPECT_EQ(run.text({"GrayResponseUnit"}, 1), "Unknown");
}

TEST(GrayResponseUnit, BecomesItsMultiplier) {
    const double multipliers[] = {0.1, 0.01, 0.001, 0.0001, 0.00001};
    TiffBuilder file;
    for (std::uint16_t unit = 1; unit <= 5; ++unit) {
        file.addImage().shorts(290, {unit});
    }
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(run.number({"GrayResponseUnit"}, i), multipliers[i]);
    }
}

TEST(GrayResponseUnit, IsUnknownForEveryOtherCode) {
    for (const std::int32_t code :
         {0, -1, 6, 7, 100000, std::numeric_limits<std::int32_t>::min()}) {
        TiffBuilder file;
        file.image().signedLongs(290, {code});
        EXPECT_EQ(ModuleRun(file.bytes()).text({"GrayResponseUnit"}), "Unknown") << code;
    }
}

TEST(GrayResponseUnit, CutsOffFractions) {
    TiffBuilder file;
    file.image().floats(290, {5.9F});
    file.addImage().floats(290, {0.9F});
    file.addImage().floats(290, {-0.9F});
    file.addImage().floats(290, {std::numeric_limits<float>::quiet_NaN()});
    const ModuleRun run(file.bytes());
    EXPECT_EQ(run.number({"GrayResponseUnit"}, 0), 0.00001);
    for (std::size_t i = 1; i < 4; ++i) {
        EXPECT_EQ(run.text({"GrayResponseUnit"}, i), "Unknown");
    }
}

TEST(GrayResponseUnit, ReplacesItsFirstValueOnly) {
    TiffBuilder file;
    file.image().shorts(290, {3, 4});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.numbers({"GrayResponseUnit"}), ElementsAre(0.001, 4));
}

TEST(GrayResponseUnit, IsLeftAloneWithoutANumber) {
    TiffBuilder file;
    file.image().shorts(290, {});
    file.addImage().rawAscii(290, "3");
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_FALSE(run.value({"GrayResponseUnit"}));
    EXPECT_EQ(run.text({"GrayResponseUnit"}, 1), "3");
}

TEST(Xmp, BecomesTextByteByByte) {
    TiffBuilder file;
    file.image().bytes(700, {'<', 'x', 0, 0xE9, '/', '>'});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_EQ(run.text({"XMP"}), "<x\0\xE9/>"sv);
    EXPECT_EQ(run.value({"XMP"}).characters()[3], 0x00E9);
}

TEST(Xmp, MayBeOfTypeUndefined) {
    TiffBuilder file;
    file.image().undefined(700, {'<', 'x', '/', '>', 0});
    EXPECT_EQ(ModuleRun(file.bytes()).text({"XMP"}), "<x/>\0"sv);
}

TEST(Xmp, TakesTheLowByteOfLargerIntegers) {
    TiffBuilder file;
    file.image().signedLongs(700, {321, -191, 65601});
    EXPECT_EQ(ModuleRun(file.bytes()).text({"XMP"}), "AAA");
}

TEST(Xmp, CutsOffFractionsAndHasANulForWhatIsNoInteger) {
    TiffBuilder file;
    file.image().doubles(700, {65.9, std::numeric_limits<double>::quiet_NaN(), 4294967361.0, 66});
    EXPECT_EQ(ModuleRun(file.bytes()).text({"XMP"}), "A\0\0B"sv);
}

TEST(Xmp, OfQuotientsHasAByteForEachQuotient) {
    TiffBuilder file;
    file.image().rationals(700, {{130, 2}, {133, 2}});
    EXPECT_EQ(ModuleRun(file.bytes()).text({"XMP"}), "AB");
}

TEST(Xmp, OfTypeAsciiKeepsItsTerminatingNul) {
    TiffBuilder file;
    file.image().ascii(700, "<x/>");
    EXPECT_EQ(ModuleRun(file.bytes()).text({"XMP"}), "<x/>\0"sv);
}

TEST(Xmp, WithoutValuesHasNoText) {
    TiffBuilder file;
    file.image().bytes(700, {});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_FALSE(run.value({"XMP"}));
}

TEST(IccProfile, IsReportedAsItsOffset) {
    TiffBuilder file;
    file.image().undefined(34675, {1, 2, 3, 4, 5, 6});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_EQ(run.number({"ICCProfileOffset"}), 26);
}

TEST(IccProfile, HasAnOffsetThatCountsFromTheHeaderInsideAJpegFile) {
    TiffBuilder file;
    file.image().undefined(34675, {1, 2, 3, 4, 5, 6});
    EXPECT_EQ(ModuleRun(jpegWithExif(file.bytes())).number({"ICCProfileOffset"}), 26);
}

TEST(IccProfile, HasOffsetZeroInsideItsEntry) {
    TiffBuilder file;
    file.image().undefined(34675, {1, 2, 3, 4});
    file.addImage().undefined(34675, {});
    const ModuleRun run(file.bytes());
    EXPECT_EQ(run.number({"ICCProfileOffset"}, 0), 0);
    EXPECT_EQ(run.number({"ICCProfileOffset"}, 1), 0);
}

TEST(IccProfile, HasAPositiveOffsetBeyondTwoGigabytes) {
    constexpr std::uint32_t kFarAway = 4'000'000'000;
    TiffBuilder file;
    file.image().entryAt(34675, 7, 6, kFarAway);
    const MemoryFile memory(file.bytes());
    memory.put(kFarAway, {1, 2, 3, 4, 5, 6});
    const ModuleRun run(memory);
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_EQ(run.number({"ICCProfileOffset"}), 4'000'000'000.0);
}

TEST(IccProfile, OfTypeAsciiShowsItsText) {
    TiffBuilder file;
    file.image().rawAscii(34675, "profile");
    EXPECT_EQ(ModuleRun(file.bytes()).text({"ICCProfileOffset"}), "profile");
}

TiffDirectory& withEveryTreatedTag(TiffDirectory& directory) {
    return directory.shorts(259, {5})
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
    TiffBuilder file;
    file.image().sub(34665, withEveryTreatedTag(file.child()));
    const ModuleRun run(jpegWithExif(file.bytes()));
    EXPECT_THAT(run.messages(), IsEmpty());
    const auto text = [&](std::string_view field) { return run.text({"DigitalCamera", field}); };
    EXPECT_EQ(text("Compression"), "LZW");
    EXPECT_EQ(text("PhotometricInterpretation"), "RGB");
    EXPECT_EQ(text("ImageDescription"), "AB");
    EXPECT_EQ(text("PlanarConfiguration"), "Planar");
    EXPECT_EQ(run.number({"DigitalCamera", "GrayResponseUnit"}), 0.001);
    EXPECT_EQ(text("ResolutionUnit"), "Centimeter");
    EXPECT_EQ(text("Predictor"), "Horizontal differencing");
    EXPECT_EQ(text("InkSet"), "not CMYK");
    EXPECT_THAT(run.numbers({"DigitalCamera", "Colormap"}), ElementsAre(1, 0, 0.2));
    EXPECT_EQ(text("SampleFormat"), "IEEE floating point");
    EXPECT_EQ(text("JPEGProc"), "Lossless process with Huffman coding");
    EXPECT_EQ(text("YCbCrPositioning"), "Co-sited");
    EXPECT_EQ(text("XMP"), "<>");
    EXPECT_EQ(run.number({"DigitalCamera", "ICCProfileOffset"}), 0);
}

class UntreatedDirectories : public ::testing::TestWithParam<std::uint16_t> {};

TEST_P(UntreatedDirectories, OfGpsAndInteroperabilityReportTheSameTagsAsTheyAre) {
    TiffBuilder file;
    file.image().sub(GetParam(), withEveryTreatedTag(file.child()));
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    const zephra::Value unknown =
        run.value({GetParam() == 34853 ? "GPSInfo" : "InteroperabilityIFD", "UnknownTags"});
    ASSERT_EQ(unknown.size(), 14U);
    const double values[] = {5, 2, 0, 2, 3, 3, 2, 2, 0, 3, 14, 2};
    for (std::size_t i = 0; i < std::size(values); ++i) {
        if (i != 2 && i != 8) {
            EXPECT_THAT(unknown.field(i, "Value").numbers(), ElementsAre(values[i])) << i;
        }
    }
    EXPECT_EQ(unknown.field(2, "Value").text(), "ABC");
    EXPECT_THAT(unknown.field(8, "Value").numbers(), ElementsAre(65535, 0, 13107));
    EXPECT_THAT(unknown.field(12, "Value").numbers(), ElementsAre('<', '>'));
    EXPECT_THAT(unknown.field(13, "Value").numbers(), ElementsAre(9, 8));
}

INSTANTIATE_TEST_SUITE_P(GpsAndInteroperability, UntreatedDirectories,
                         ::testing::Values(std::uint16_t{34853}, std::uint16_t{40965}));

}  // namespace

}  // namespace veltrace::test
