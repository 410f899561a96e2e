// What a file shows of the baseline tags that it lacks.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string_view>

#include "support/encodings.h"
#include "support/module_run.h"
#include "support/tiff_builder.h"

namespace veltrace::test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FallbackFields : public ::testing::TestWithParam<Encoding> {};

TEST_P(FallbackFields, FillTheFieldsOfADirectoryWithoutBaselineTags) {
    TiffBuilder file(GetParam().order, GetParam().flavour);
    file.image().ascii(305, "kiln");
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_EQ(run.number({"NewSubFileType"}), 0);
    EXPECT_EQ(run.number({"BitsPerSample"}), 1);
    EXPECT_EQ(run.text({"Compression"}), "Uncompressed");
    EXPECT_EQ(run.number({"Thresholding"}), 1);
    EXPECT_EQ(run.number({"FillOrder"}), 1);
    EXPECT_EQ(run.number({"Orientation"}), 1);
    EXPECT_EQ(run.number({"SamplesPerPixel"}), 1);
    EXPECT_EQ(run.number({"RowsPerStrip"}), 4294967295);
    EXPECT_EQ(run.number({"MinSampleValue"}), 0);
    EXPECT_EQ(run.number({"MaxSampleValue"}), 1);
    EXPECT_EQ(run.text({"PlanarConfiguration"}), "Chunky");
    EXPECT_EQ(run.number({"GrayResponseUnit"}), 0.01);
    EXPECT_EQ(run.text({"ResolutionUnit"}), "None");
    for (const std::string_view field :
         {"StripOffsets", "StripByteCounts", "XResolution", "YResolution", "Colormap", "TileWidth",
          "TileLength", "TileOffsets", "TileByteCounts", "PhotometricInterpretation"}) {
        EXPECT_TRUE(run.hasField({field})) << field;
        EXPECT_FALSE(run.value({field})) << field;
    }
}

INSTANTIATE_TEST_SUITE_P(InEveryEncoding, FallbackFields, ::testing::ValuesIn(kEveryEncoding),
                         encodingName);

TEST(Fallback, GivesWayToTheTagOfTheFile) {
    TiffBuilder file;
    file.image()
        .longs(254, {1})
        .shorts(258, {8, 8, 8})
        .shorts(259, {5})
        .shorts(263, {2})
        .shorts(266, {2})
        .longs(273, {100})
        .shorts(274, {6})
        .shorts(277, {3})
        .shorts(278, {16})
        .longs(279, {200})
        .shorts(280, {3})
        .shorts(281, {200, 201, 202})
        .rationals(282, {{72, 1}})
        .rationals(283, {{36, 1}})
        .shorts(284, {2})
        .shorts(290, {4})
        .shorts(296, {2})
        .shorts(320, {65535, 0, 0})
        .shorts(322, {64})
        .shorts(323, {32})
        .longs(324, {300})
        .longs(325, {400});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_EQ(run.number({"NewSubFileType"}), 1);
    EXPECT_THAT(run.numbers({"BitsPerSample"}), ElementsAre(8, 8, 8));
    EXPECT_EQ(run.text({"Compression"}), "LZW");
    EXPECT_EQ(run.number({"Thresholding"}), 2);
    EXPECT_EQ(run.number({"FillOrder"}), 2);
    EXPECT_EQ(run.number({"StripOffsets"}), 100);
    EXPECT_EQ(run.number({"Orientation"}), 6);
    EXPECT_EQ(run.number({"SamplesPerPixel"}), 3);
    EXPECT_EQ(run.number({"RowsPerStrip"}), 16);
    EXPECT_EQ(run.number({"StripByteCounts"}), 200);
    EXPECT_EQ(run.number({"MinSampleValue"}), 3);
    EXPECT_THAT(run.numbers({"MaxSampleValue"}), ElementsAre(200, 201, 202));
    EXPECT_EQ(run.number({"XResolution"}), 72);
    EXPECT_EQ(run.number({"YResolution"}), 36);
    EXPECT_EQ(run.text({"PlanarConfiguration"}), "Planar");
    EXPECT_EQ(run.number({"GrayResponseUnit"}), 0.0001);
    EXPECT_EQ(run.text({"ResolutionUnit"}), "Inch");
    EXPECT_THAT(run.numbers({"Colormap"}), ElementsAre(1, 0, 0));
    EXPECT_EQ(run.number({"TileWidth"}), 64);
    EXPECT_EQ(run.number({"TileLength"}), 32);
    EXPECT_EQ(run.number({"TileOffsets"}), 300);
    EXPECT_EQ(run.number({"TileByteCounts"}), 400);
}

// Each of these files has the other baseline tags that are reported as words or multipliers.

TEST(Fallback, OfCompressionIsUncompressed) {
    TiffBuilder file;
    file.image().shorts(296, {2}).shorts(284, {2});
    EXPECT_EQ(ModuleRun(file.bytes()).text({"Compression"}), "Uncompressed");
}

TEST(Fallback, OfResolutionUnitIsNone) {
    TiffBuilder file;
    file.image().shorts(259, {5}).shorts(284, {2});
    EXPECT_EQ(ModuleRun(file.bytes()).text({"ResolutionUnit"}), "None");
}

TEST(Fallback, OfPlanarConfigurationIsChunky) {
    TiffBuilder file;
    file.image().shorts(259, {5}).shorts(296, {2});
    EXPECT_EQ(ModuleRun(file.bytes()).text({"PlanarConfiguration"}), "Chunky");
}

TEST(Fallback, OfRowsPerStripIsTheLargest32BitNumber) {
    TiffBuilder file;
    file.image().shorts(259, {5}).shorts(290, {4});
    EXPECT_EQ(ModuleRun(file.bytes()).number({"RowsPerStrip"}), 4294967295);
}

TEST(Fallback, OfGrayResponseUnitIsOneHundredth) {
    TiffBuilder file;
    file.image().shorts(259, {5}).shorts(278, {4});
    EXPECT_EQ(ModuleRun(file.bytes()).number({"GrayResponseUnit"}), 0.01);
}

TEST(Fallback, OfTheBitDepthCountsTheValuesOfSamplesPerPixelWhateverTheyAre) {
    TiffBuilder file;
    file.image().shorts(277, {9, 9, 9});
    file.addImage().shorts(277, {3});
    file.addImage().shorts(277, {});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.numbers({"BitsPerSample"}, 0), ElementsAre(1, 1, 1));
    EXPECT_THAT(run.numbers({"MaxSampleValue"}, 0), ElementsAre(1, 1, 1));
    EXPECT_EQ(run.number({"BitDepth"}, 0), 3);
    EXPECT_THAT(run.numbers({"BitsPerSample"}, 1), ElementsAre(1));
    EXPECT_THAT(run.numbers({"MaxSampleValue"}, 1), ElementsAre(1));
    EXPECT_FALSE(run.value({"BitsPerSample"}, 2));
    EXPECT_FALSE(run.value({"MaxSampleValue"}, 2));
    EXPECT_EQ(run.number({"BitDepth"}, 2), 0);
}

TEST(Fallback, OfTheLargestValueFollowsTheBitDepths) {
    TiffBuilder file;
    file.image().shorts(258, {8, 8, 8});
    file.addImage().shorts(258, {1, 16});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.numbers({"MaxSampleValue"}, 0), ElementsAre(255, 255, 255));
    EXPECT_THAT(run.dimensions({"MaxSampleValue"}, 0), ElementsAre(1, 3));
    EXPECT_THAT(run.numbers({"MaxSampleValue"}, 1), ElementsAre(1, 65535));
}

TEST(Fallback, IsNotNeededForATagWithoutValues) {
    TiffBuilder file;
    file.image().shorts(258, {}).shorts(259, {}).shorts(274, {}).shorts(290, {});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    for (const std::string_view field :
         {"BitsPerSample", "MaxSampleValue", "Compression", "Orientation", "GrayResponseUnit"}) {
        EXPECT_FALSE(run.value({field})) << field;
    }
}

TEST(Fallback, StandsInForATagThatFailed) {
    TiffBuilder file;
    file.image().entry(259, 0, 1, {}).shorts(271, {1});
    const ModuleRun run(file.bytes());
    EXPECT_EQ(run.warnings().size(), 1U);
    EXPECT_EQ(run.text({"Compression"}), "Uncompressed");
}

TEST(Fallback, FillsGenericSubDirectoriesOfTiffFilesButNoOthers) {
    TiffBuilder file;
    file.image()
        .sub(330, file.child().shorts(271, {1}))
        .sub(34665, file.child().shorts(37383, {5}))
        .sub(34853, file.child().shorts(1, {1}));
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_EQ(run.text({"SubIFDs", "ResolutionUnit"}), "None");
    EXPECT_THAT(run.fieldNames({"DigitalCamera"}), ElementsAre("MeteringMode"));
    EXPECT_THAT(run.fieldNames({"GPSInfo"}), ElementsAre("GPSLatitudeRef"));
}

TEST(Fallback, IsAbsentFromJpegFiles) {
    TiffBuilder file;
    file.image().shorts(271, {1}).sub(330, file.child().shorts(272, {1}));
    const ModuleRun run(jpegWithExif(file.bytes()));
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_FALSE(run.hasField({"Compression"}));
    EXPECT_FALSE(run.hasField({"SubIFDs", "Compression"}));
}

}  // namespace

}  // namespace veltrace::test
