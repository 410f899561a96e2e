// Width, Height, ColorType and BitDepth.
#include <cmath>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "support/module_run.h"
#include "support/tiff_builder.h"
#include "vocabulary/tables.h"

namespace veltrace::test {

namespace {

using ::testing::IsEmpty;

TEST(WidthAndHeight, AreTheFirstValuesOfTheirTags) {
    TiffBuilder file;
    file.image().shorts(256, {640, 1}).longs(257, {480, 2});
    file.addImage().doubles(256, {2.5}).rationals(257, {{7, 2}});
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_EQ(run.number({"Width"}, 0), 640);
    EXPECT_EQ(run.number({"Height"}, 0), 480);
    EXPECT_EQ(run.number({"Width"}, 1), 2.5);
    EXPECT_EQ(run.number({"Height"}, 1), 3.5);
}

TEST(WidthAndHeight, AreZeroWithoutTheirTags) {
    TiffBuilder file;
    file.image().shorts(271, {1});
    for (const Bytes& bytes : {file.bytes(), jpegWithExif(file.bytes())}) {
        const ModuleRun run(bytes);
        EXPECT_EQ(run.number({"Width"}), 0);
        EXPECT_EQ(run.number({"Height"}), 0);
    }
}

TEST(WidthAndHeight, StayWhatTheyWereForATagWithoutNumbers) {
    TiffBuilder file;
    file.image().shorts(256, {640}).shorts(256, {}).shorts(257, {480}).rawAscii(257, "9");
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    EXPECT_EQ(run.number({"Width"}), 640);
    EXPECT_EQ(run.number({"Height"}), 480);
}

TEST(ColorType, IsAWordForEachKnownPhotometricCode) {
    TiffBuilder file;
    for (const WordRow& row : kColorTypes) {
        file.addImage().signedLongs(262, {row.code});
    }
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    for (std::size_t i = 0; i < std::size(kColorTypes); ++i) {
        EXPECT_EQ(run.text({"ColorType"}, i), kColorTypes[i].word) << kColorTypes[i].code;
    }
}

TEST(ColorType, IsTheNumberOfEveryOtherCode) {
    const std::vector<std::int32_t> codes{7,     11,    12,    255,   32802, 32804, 32843,
                                          32846, 34891, 34893, 65535, -1,    -2,    2147483647};
    TiffBuilder file;
    for (const std::int32_t code : codes) {
        file.addImage().signedLongs(262, {code});
    }
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    for (std::size_t i = 0; i < codes.size(); ++i) {
        EXPECT_EQ(run.number({"ColorType"}, i), codes[i]);
    }
}

TEST(ColorType, IsMinusOneWithoutPhotometricCodeAndColormap) {
    TiffBuilder file;
    file.image().shorts(271, {1});
    file.addImage().shorts(262, {});
    file.addImage().rawAscii(262, "2");
    const ModuleRun run(file.bytes());
    EXPECT_THAT(run.messages(), IsEmpty());
    for (const std::size_t element : {0U, 1U, 2U}) {
        EXPECT_EQ(run.number({"ColorType"}, element), -1);
    }
}

TEST(ColorType, KeepsThePhotometricCodeOfAnEarlierTagWithANumber) {
    TiffBuilder file;
    file.image().shorts(262, {2}).shorts(262, {});
    EXPECT_EQ(ModuleRun(file.bytes()).text({"ColorType"}), "truecolor");
}

TEST(ColorType, TruncatesThePhotometricCode) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::vector<std::pair<double, double>> codes{{7.9, 7},
                                                       {-1.9, -1},
                                                       {2147483647.5, 2147483647},
                                                       {2147483648.0, -2147483648.0},
                                                       {1e300, -2147483648.0},
                                                       {-1e300, -2147483648.0},
                                                       {nan, -2147483648.0}};
    TiffBuilder file;
    for (const auto& [stored, code] : codes) {
        file.addImage().doubles(262, {stored});
    }
    const ModuleRun run(file.bytes());
    for (std::size_t i = 0; i < codes.size(); ++i) {
        EXPECT_EQ(run.number({"ColorType"}, i), codes[i].second);
    }
}

TEST(ColorType, IsIndexedWithAColormapWhateverThePhotometricCode) {
    TiffBuilder file;
    file.image().shorts(262, {3}).shorts(320, {0, 0, 0});
    file.addImage().shorts(262, {2}).shorts(320, {0, 0, 0});
    file.addImage().shorts(320, {});
    const ModuleRun run(file.bytes());
    for (const std::size_t element : {0U, 1U, 2U}) {
        EXPECT_EQ(run.text({"ColorType"}, element), "indexed");
    }
}

TEST(ColorType, IsNotIndexedWhereOnlyAnotherDirectoryHasAColormap) {
    TiffBuilder file;
    file.image().shorts(262, {3}).shorts(320, {0, 0, 0});
    file.addImage().shorts(262, {3});
    EXPECT_EQ(ModuleRun(file.bytes()).text({"ColorType"}, 1), "RGB Palette");
}

TEST(ColorType, IsTakenFromJpegFilesInTheSameWay) {
    TiffBuilder file;
    file.image().shorts(262, {6});
    EXPECT_EQ(ModuleRun(jpegWithExif(file.bytes())).text({"ColorType"}), "YCbCr");
}

TEST(BitDepth, IsTheSumOfTheBitsOfAllSamplesSo24ForThreeOfEight) {
    TiffBuilder file;
    file.image().shorts(258, {8, 8, 8});
    file.addImage().shorts(258, {16});
    file.addImage().doubles(258, {0.5, 2.25});
    const ModuleRun run(file.bytes());
    EXPECT_EQ(run.number({"BitDepth"}, 0), 24);
    EXPECT_EQ(run.number({"BitDepth"}, 1), 16);
    EXPECT_EQ(run.number({"BitDepth"}, 2), 2.75);
}

TEST(BitDepth, IsOneForASampleOfUnknownDepthInATiffFile) {
    TiffBuilder file;
    file.image().shorts(271, {1});
    EXPECT_EQ(ModuleRun(file.bytes()).number({"BitDepth"}), 1);
}

TEST(BitDepth, IsZeroWithoutBits) {
    TiffBuilder file;
    file.image().shorts(271, {1});
    EXPECT_EQ(ModuleRun(jpegWithExif(file.bytes())).number({"BitDepth"}), 0);
    TiffBuilder empty;
    empty.image().shorts(258, {});
    EXPECT_EQ(ModuleRun(empty.bytes()).number({"BitDepth"}), 0);
}

TEST(BitDepth, IsNeverMinusZero) {
    TiffBuilder file;
    file.image().doubles(258, {-0.0, -0.0});
    EXPECT_FALSE(std::signbit(ModuleRun(file.bytes()).number({"BitDepth"})));
}

TEST(BitDepth, IsThatOfTheLastTag) {
    TiffBuilder file;
    file.image().shorts(258, {8, 8, 8}).shorts(258, {4});
    EXPECT_EQ(ModuleRun(file.bytes()).number({"BitDepth"}), 4);
}

}  // namespace

}  // namespace veltrace::test
