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

struct DirectoryNames {
    IfdId ifdId;
    std::span<const NameRow> rows;
    std::size_t count;
};

class TagDictionaryOf : public ::testing::TestWithParam<DirectoryNames> {};

INSTANTIATE_TEST_SUITE_P(Directories, TagDictionaryOf,
                         ::testing::Values(DirectoryNames{IfdId::image, kMainRows, 272},
                                           DirectoryNames{IfdId::exif, kMainRows, 272},
                                           DirectoryNames{IfdId::gps, kGpsRows, 31},
                                           DirectoryNames{IfdId::interoperability,
                                                          kInteroperabilityRows, 5}));

TEST_P(TagDictionaryOf, NamesExactlyTheListedTags) {
    std::map<std::uint32_t, std::string_view> names;
    for (const auto& [id, name] : GetParam().rows) {
        names[id] = name;
    }
    EXPECT_EQ(names.size(), GetParam().count);
    for (std::uint32_t id = 0; id <= 65535; ++id) {
        EXPECT_EQ(tagNameFor(GetParam().ifdId, static_cast<std::uint16_t>(id)), names[id])
            << "tag " << id;
    }
}

TEST(TagDictionary, EndsEveryNameWithANul) {
    for (const auto& [id, name] : kMainRows) {
        const std::string_view found = tagNameFor(IfdId::image, id);
        EXPECT_EQ(found.data()[found.size()], '\0') << name;
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
