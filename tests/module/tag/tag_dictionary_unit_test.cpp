// The dictionary, for every id.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <span>
#include <string_view>

#include "support/module_run.h"
#include "support/thrown.h"
#include "support/tiff_tag_peer.h"
#include "tag/tag_dictionary.h"
#include "tag/tiff_tag.h"
#include "vocabulary/tables.h"

namespace veltrace::test {

using namespace module;

namespace {

using ::testing::IsEmpty;

void expectExactly(IfdId ifdId, std::span<const NameRow> rows) {
    std::map<std::uint32_t, std::string_view> names;
    for (const auto& [id, name] : rows) {
        names[id] = name;
    }
    for (std::uint32_t id = 0; id <= 65535; ++id) {
        EXPECT_EQ(tagNameFor(ifdId, static_cast<std::uint16_t>(id)), names[id]) << "tag " << id;
    }
}

TEST(TagDictionary, NamesExactlyTheListedTagsOfAnImageDirectory) {
    static_assert(std::size(kMainRows) == 272);
    expectExactly(IfdId::image, kMainRows);
}

TEST(TagDictionary, UsesOneTableForImageAndExifDirectories) {
    expectExactly(IfdId::exif, kMainRows);
}

TEST(TagDictionary, NamesExactlyTheListedTagsOfAGpsDirectory) {
    static_assert(std::size(kGpsRows) == 31);
    expectExactly(IfdId::gps, kGpsRows);
}

TEST(TagDictionary, NamesExactlyTheListedTagsOfAnInteroperabilityDirectory) {
    static_assert(std::size(kInteroperabilityRows) == 5);
    expectExactly(IfdId::interoperability, kInteroperabilityRows);
}

TEST(TagDictionary, EndsEveryNameWithANul) {
    for (const auto& [id, name] : kMainRows) {
        const std::string_view found = tagNameFor(IfdId::image, id);
        EXPECT_EQ(found.data()[found.size()], '\0') << name;
    }
}

TEST(TagDictionary, NamesTag1ByItsDirectory) {
    EXPECT_EQ(tagNameFor(IfdId::image, 1), "");
    EXPECT_EQ(tagNameFor(IfdId::gps, 1), "GPSLatitudeRef");
    EXPECT_EQ(tagNameFor(IfdId::interoperability, 1), "InteroperabilityIndex");
}

TEST(TagDictionary, NamesTag0OnlyInGpsDirectories) {
    EXPECT_EQ(tagNameFor(IfdId::gps, 0), "GPSVersionID");
    EXPECT_EQ(tagNameFor(IfdId::image, 0), "");
    EXPECT_EQ(tagNameFor(IfdId::exif, 0), "");
}

TEST(TagDictionary, NamesTheExifPointerOnlyInImageAndExifDirectories) {
    EXPECT_EQ(tagNameFor(IfdId::image, 34665), "DigitalCamera");
    EXPECT_EQ(tagNameFor(IfdId::exif, 34665), "DigitalCamera");
    EXPECT_EQ(tagNameFor(IfdId::gps, 34665), "");
    EXPECT_EQ(tagNameFor(IfdId::interoperability, 34665), "");
}

TEST(TagDictionary, KeepsSpellingsThatDifferFromThePublishedOnes) {
    const NameRow rows[] = {{254, "NewSubFileType"},
                            {255, "SubFileType"},
                            {256, "Width"},
                            {257, "Height"},
                            {289, "FreeByteCount"},
                            {33723, "ITPC"},
                            {34031, "IT8TRapIndicator"},
                            {34665, "DigitalCamera"},
                            {34675, "ICCProfileOffset"},
                            {34853, "GPSInfo"},
                            {37439, "StoNITS"},
                            {40962, "CPixelXDimension"},
                            {40963, "CPixelYDimension"},
                            {40965, "InteroperabilityIFD"},
                            {42112, "GDAL_METADATA"},
                            {42113, "GDAL_NODATA"}};
    for (const auto& [id, name] : rows) {
        EXPECT_EQ(tagNameFor(IfdId::image, id), name);
    }
}

TEST(TagDictionary, RejectsAnImpossibleKindOfDirectory) {
    EXPECT_EQ(
        fatalErrorOf([] { (void)tagNameFor(IfdId{4}, 259); }),
        message("ZEPHRA:veltrace:getTagName:unrecognizedIfdId", "Did not recognize IFD ID 4\n"));
    EXPECT_EQ(fatalErrorOf([] { (void)tagNameFor(IfdId{4294967295}, 259); }),
              message("ZEPHRA:veltrace:getTagName:unrecognizedIfdId",
                      "Did not recognize IFD ID 4294967295\n"));
}

TEST(TagName, IsUnchangedIfTheKindOfDirectoryIsImpossible) {
    TiffTag tag(259, IfdId::image);
    TiffTagPeer::setIfdId(tag, IfdId{4});
    EXPECT_EQ(
        fatalErrorOf([&] { TiffTagPeer::getTagName(tag); }),
        message("ZEPHRA:veltrace:getTagName:unrecognizedIfdId", "Did not recognize IFD ID 4\n"));
    EXPECT_EQ(tag.name(), "Compression");
}

TEST(TagName, BecomesEmptyIfTheTagIsUnknown) {
    TiffTag tag(259, IfdId::image);
    TiffTagPeer::setIfdId(tag, IfdId::gps);
    TiffTagPeer::getTagName(tag);
    EXPECT_THAT(tag.name(), IsEmpty());
}

}  // namespace

}  // namespace veltrace::test
