// What a file reports for the baseline tags that it lacks.
#include "support/file_test.h"

namespace veltrace::test {

namespace {

constexpr const char* kNumbersAndWords =
    "NewSubFileType BitsPerSample Compression Thresholding FillOrder Orientation SamplesPerPixel "
    "RowsPerStrip MinSampleValue MaxSampleValue PlanarConfiguration GrayResponseUnit "
    "ResolutionUnit";
constexpr const char* kOthers =
    "StripOffsets StripByteCounts XResolution YResolution Colormap TileWidth TileLength "
    "TileOffsets TileByteCounts PhotometricInterpretation";

TEST(Fallback, FillsTheFieldsOfADirectoryWithoutBaselineTags) {
    expectShown({
        {Dir().ascii(305, "kiln"), kNumbersAndWords,
         "0; 1; 'Uncompressed'; 1; 1; 1; 1; 4294967295; 0; 1; 'Chunky'; 0.01; 'None'"},
        {Dir().ascii(305, "kiln"), kOthers,
         "none; none; none; none; none; none; none; none; none; none"},
    });
}

TEST(Fallback, GivesWayToTheTagOfTheFile) {
    expectShown({
        {Dir()
             .longs(254, {1})
             .shorts(258, {8, 8, 8})
             .shorts(259, {5})
             .shorts(263, {2})
             .shorts(266, {2})
             .shorts(274, {6})
             .shorts(277, {3})
             .shorts(278, {16})
             .shorts(280, {3})
             .shorts(281, {200, 201, 202})
             .shorts(284, {2})
             .shorts(290, {4})
             .shorts(296, {2}),
         kNumbersAndWords,
         "1; 1x3 [8 8 8]; 'LZW'; 2; 2; 6; 3; 16; 3; 1x3 [200 201 202]; 'Planar'; 1e-04; 'Inch'"},
        {Dir()
             .longs(273, {100})
             .longs(279, {200})
             .rationals(282, {{72, 1}})
             .rationals(283, {{36, 1}})
             .shorts(320, {65535, 0, 0})
             .shorts(322, {64})
             .shorts(323, {32})
             .longs(324, {300})
             .longs(325, {400})
             .shorts(262, {2}),
         kOthers, "100; 200; 72; 36; 1x3 [1 0 0]; 64; 32; 300; 400; 'RGB'"},
    });
}

// Each directory has the other baseline tags that are reported as words or multipliers.
TEST(Fallback, OfOneTagIsTheSameBesideOthers) {
    expectShown({
        {Dir().shorts(296, {2}).shorts(284, {2}), "Compression", "'Uncompressed'"},
        {Dir().shorts(259, {5}).shorts(284, {2}), "ResolutionUnit", "'None'"},
        {Dir().shorts(259, {5}).shorts(296, {2}), "PlanarConfiguration", "'Chunky'"},
        {Dir().shorts(259, {5}).shorts(290, {4}), "RowsPerStrip", "4294967295"},
        {Dir().shorts(259, {5}).shorts(278, {4}), "GrayResponseUnit", "0.01"},
    });
}

TEST(Fallback, IsNotNeededForATagWithoutValues) {
    expectShown({
        {Dir().shorts(258, {}).shorts(259, {}).shorts(274, {}).shorts(290, {}),
         "BitsPerSample MaxSampleValue Compression Orientation GrayResponseUnit",
         "none; none; none; none; none"},
    });
}

TEST(Fallback, ReplacesATagThatFailed) {
    expectShown({{Dir().entry(259, 0, 1, {}).shorts(271, {1}),
                  "Compression",
                  "'Uncompressed'",
                  {noType(259)}}});
}

TEST(Fallback, FillsGenericSubDirectoriesOfTiffFilesButNoOthers) {
    const ModuleRun run = quietRun(tiffOf(Dir()
                                              .nest(330, Dir().shorts(271, {1}))
                                              .nest(34665, Dir().shorts(37383, {5}))
                                              .nest(34853, Dir().shorts(1, {1}))));
    EXPECT_EQ(run.text({"SubIFDs", "ResolutionUnit"}), "None");
    EXPECT_THAT(run.fieldNames({"DigitalCamera"}), ElementsAre("MeteringMode"));
    EXPECT_THAT(run.fieldNames({"GPSInfo"}), ElementsAre("GPSLatitudeRef"));
}

TEST(Fallback, IsAbsentFromJpegFiles) {
    const ModuleRun run =
        quietRun(jpegWithExif(tiffOf(Dir().shorts(271, {1}).nest(330, Dir().shorts(272, {1})))));
    EXPECT_FALSE(run.hasField({"Compression"}));
    EXPECT_FALSE(run.hasField({"SubIFDs", "Compression"}));
}

}  // namespace

}  // namespace veltrace::test
