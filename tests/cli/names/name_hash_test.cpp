#include "names/name_hash.h"

#include <gtest/gtest.h>
#include <string>

#include "names/all_names.h"

namespace veltrace::cli {
namespace {

TEST(Shard, IsParsedFromIndexAndCountOnly) {
    const auto shard = parseShard("3/16");
    ASSERT_TRUE(shard);
    EXPECT_EQ(shard->index, 3U);
    EXPECT_EQ(shard->count, 16U);
    EXPECT_TRUE(parseShard("1/1"));
    EXPECT_TRUE(parseShard("4294967295/4294967295"));
    for (const char* text : {"",     "/",     "1",    "1/",    "/1",    "0/4",          "5/4",
                             "0/0",  "-1/4",  "+1/4", "1/-4",  " 1/4",  "1/4 ",         "1 /4",
                             "1//4", "1/4/4", "a/b",  "0x1/4", "1.0/4", "1/4294967296", "1/4\n"}) {
        EXPECT_FALSE(parseShard(text)) << text;
    }
}

TEST(Shard, EveryNameIsInExactlyOne) {
    for (const std::string& name : test::oddNames()) {
        EXPECT_TRUE((Shard{1, 1}.contains(name)));
    }
    for (int i = 0; i < 1000; ++i) {
        const std::string name = "directory/" + std::to_string(i) + ".tif";
        int found = 0;
        for (std::uint32_t index = 1; index <= 7; ++index) {
            found += Shard{index, 7}.contains(name) ? 1 : 0;
        }
        EXPECT_EQ(found, 1) << name;
    }
}

TEST(Shard, EachContainsItsPartOfTheNames) {
    int found = 0;
    for (int i = 0; i < 10000; ++i) {
        found += Shard{2, 4}.contains("image-" + std::to_string(i)) ? 1 : 0;
    }
    EXPECT_GT(found, 2250);  // 2500, and five standard deviations
    EXPECT_LT(found, 2750);
}

// The published hash of no bytes: 2D06800538D394C2 (64 bits), 99AA06D3014798D86001C324468D497F.
TEST(Shard, UsesThePublishedHash) {
    EXPECT_EQ(shortHashOf(""), 0x2D06800538D394C2U);
    EXPECT_EQ(hashOf(""), (NameHash{0x99AA06D3014798D8U, 0x6001C324468D497FU}));
    EXPECT_TRUE((Shard{0xC2 + 1, 256}.contains("")));
}

}  // namespace
}  // namespace veltrace::cli
