// Fallback tags, constructed directly.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "support/module_run.h"
#include "support/thrown.h"
#include "tag/tiff_tag.h"

namespace veltrace::test {

using namespace module;

namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::IsNan;
using ::testing::SizeIs;

struct Fallback {
    std::uint16_t tag;
    std::string_view name;
    std::vector<double> values;
    std::string word;
};

const Fallback kFallbacks[] = {
    {254, "NewSubFileType", {0}, ""},
    {259, "Compression", {1}, "Uncompressed"},
    {263, "Thresholding", {1}, ""},
    {266, "FillOrder", {1}, ""},
    {273, "StripOffsets", {}, ""},
    {274, "Orientation", {1}, ""},
    {277, "SamplesPerPixel", {1}, ""},
    {278, "RowsPerStrip", {4294967295}, ""},
    {279, "StripByteCounts", {}, ""},
    {280, "MinSampleValue", {0}, ""},
    {282, "XResolution", {}, ""},
    {283, "YResolution", {}, ""},
    {284, "PlanarConfiguration", {1}, "Chunky"},
    {290, "GrayResponseUnit", {0.01}, ""},
    {296, "ResolutionUnit", {1}, "None"},
    {320, "Colormap", {}, ""},
    {322, "TileWidth", {}, ""},
    {323, "TileLength", {}, ""},
    {324, "TileOffsets", {}, ""},
    {325, "TileByteCounts", {}, ""},
};

zephra::Message rejection(std::uint32_t tag, std::string_view rest) {
    return message("ZEPHRA:veltrace:TagFile:defaultField:unrecognizedTagId",
                   "Unrecognized tag ID " + std::to_string(tag) +
                       " for fallback default value constructor" + std::string(rest));
}

void expectNothingFromAFile(const TiffTag& tag) {
    EXPECT_EQ(tag.dataType(), 0);
    EXPECT_EQ(tag.valueOffset(), 0U);
    EXPECT_THAT(tag.rawValues(), IsEmpty());
    EXPECT_THAT(tag.rawText(), IsEmpty());
    EXPECT_EQ(tag.subDirectory(), nullptr);
}

TEST(FallbackTag, HasItsNameAndValue) {
    for (const Fallback& fallback : kFallbacks) {
        SCOPED_TRACE(fallback.name);
        const TiffTag tag(fallback.tag, IfdId::image);
        EXPECT_EQ(tag.tagId(), fallback.tag);
        EXPECT_EQ(tag.ifdId(), IfdId::image);
        EXPECT_EQ(tag.name(), fallback.name);
        EXPECT_EQ(tag.count(), 0U);
        EXPECT_EQ(tag.outputValues(), fallback.values);
        EXPECT_EQ(tag.outputText(), fallback.word);
        expectNothingFromAFile(tag);
    }
}

TEST(FallbackTag, RejectsAnyOtherId) {
    for (std::uint32_t id = 0; id <= 65535; ++id) {
        if (std::ranges::find(kFallbacks, id, &Fallback::tag) == std::end(kFallbacks)) {
            EXPECT_EQ(recoverableErrorOf([id] {
                          const TiffTag tag(static_cast<std::uint16_t>(id), IfdId::image);
                      }),
                      rejection(id, ".\n"));
        }
    }
}

TEST(FallbackTag, NeedsASuppliedValueForBitsPerSampleAndMaxSampleValue) {
    EXPECT_EQ(recoverableErrorOf([] { const TiffTag tag(258, IfdId::image); }),
              rejection(258, ".\n"));
    EXPECT_EQ(recoverableErrorOf([] { const TiffTag tag(281, IfdId::image); }),
              rejection(281, ".\n"));
}

TEST(FallbackTag, IsNamedAndInterpretedByTheKindOfItsDirectory) {
    const TiffTag exif(284, IfdId::exif);
    EXPECT_EQ(exif.name(), "PlanarConfiguration");
    EXPECT_EQ(exif.outputText(), "Chunky");
    const TiffTag gps(284, IfdId::gps);
    EXPECT_EQ(gps.ifdId(), IfdId::gps);
    EXPECT_THAT(gps.name(), IsEmpty());
    EXPECT_THAT(gps.outputText(), IsEmpty());
    EXPECT_THAT(gps.outputValues(), ElementsAre(1));
}

TEST(FallbackBitDepth, IsOneForEachSample) {
    const TiffTag tag(258, IfdId::image, std::uint32_t{3});
    EXPECT_EQ(tag.tagId(), 258);
    EXPECT_EQ(tag.name(), "BitsPerSample");
    EXPECT_THAT(tag.outputValues(), ElementsAre(1, 1, 1));
    EXPECT_EQ(tag.count(), 0U);
    EXPECT_THAT(tag.outputText(), IsEmpty());
    expectNothingFromAFile(tag);
    const TiffTag many(258, IfdId::image, std::uint32_t{1000});
    EXPECT_THAT(many.outputValues(), SizeIs(1000));
    EXPECT_THAT(many.outputValues(), Each(1));
}

TEST(FallbackBitDepth, HasNoValuesForNoSamples) {
    const TiffTag tag(258, IfdId::image, std::uint32_t{0});
    EXPECT_EQ(tag.name(), "BitsPerSample");
    EXPECT_THAT(tag.outputValues(), IsEmpty());
}

TEST(FallbackBitDepth, RejectsAnyOtherId) {
    for (const std::uint16_t id : std::vector<std::uint16_t>{0, 254, 257, 259, 277, 281, 65535}) {
        EXPECT_EQ(
            recoverableErrorOf([id] { const TiffTag tag(id, IfdId::image, std::uint32_t{3}); }),
            rejection(id, " with supplied value.\n"));
    }
}

TEST(FallbackLargestValue, Is255For8BitsAnd1For1Bit) {
    const TiffTag tag(281, IfdId::image, std::vector<double>{8, 8, 8});
    EXPECT_EQ(tag.tagId(), 281);
    EXPECT_EQ(tag.name(), "MaxSampleValue");
    EXPECT_THAT(tag.outputValues(), ElementsAre(255, 255, 255));
    EXPECT_EQ(tag.count(), 3U);
    EXPECT_THAT(tag.outputText(), IsEmpty());
    expectNothingFromAFile(tag);
    EXPECT_THAT(TiffTag(281, IfdId::image, std::vector<double>{1}).outputValues(), ElementsAre(1));
    EXPECT_THAT(TiffTag(281, IfdId::image, std::vector<double>{1, 2, 4, 16, 32}).outputValues(),
                ElementsAre(1, 3, 15, 65535, 4294967295));
}

TEST(FallbackLargestValue, HasNoValuesForNoBitDepths) {
    const TiffTag tag(281, IfdId::image, std::vector<double>{});
    EXPECT_THAT(tag.outputValues(), IsEmpty());
    EXPECT_EQ(tag.count(), 0U);
}

TEST(FallbackLargestValue, IsAPowerOfTwoMinusOneForAnyNumber) {
    const double infinity = std::numeric_limits<double>::infinity();
    const TiffTag tag(281, IfdId::image,
                      std::vector<double>{0, -1, 0.5, 64, 1024, infinity, -infinity,
                                          std::numeric_limits<double>::quiet_NaN()});
    EXPECT_THAT(tag.outputValues(),
                ElementsAre(0, -0.5, std::pow(2.0, 0.5) - 1, 18446744073709551616.0, infinity,
                            infinity, -1, IsNan()));
}

TEST(FallbackLargestValue, RejectsAnyOtherId) {
    for (const std::uint16_t id : std::vector<std::uint16_t>{0, 254, 258, 280, 282, 65535}) {
        EXPECT_EQ(recoverableErrorOf(
                      [id] { const TiffTag tag(id, IfdId::image, std::vector<double>{8}); }),
                  rejection(id, " with supplied value.\n"));
    }
}

// With two errors, the reported one shows if the name or the id is checked first.
TEST(FallbackTag, IsNamedBeforeItsIdIsCheckedExceptForLargestValues) {
    const auto badDirectory =
        message("ZEPHRA:veltrace:getTagName:unrecognizedIfdId", "Did not recognize IFD ID 4\n");
    EXPECT_EQ(fatalErrorOf([] { const TiffTag tag(0, IfdId{4}); }), badDirectory);
    EXPECT_EQ(fatalErrorOf([] { const TiffTag tag(0, IfdId{4}, std::uint32_t{3}); }), badDirectory);
    EXPECT_EQ(recoverableErrorOf([] { const TiffTag tag(0, IfdId{4}, std::vector<double>{8}); }),
              rejection(0, " with supplied value.\n"));
    EXPECT_EQ(fatalErrorOf([] { const TiffTag tag(281, IfdId{4}, std::vector<double>{8}); }),
              badDirectory);
}

}  // namespace

}  // namespace veltrace::test
