// Names that are looked up among a few.
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "tagfile/name_set.h"

namespace veltrace::module {
namespace {

TEST(NameSet, OfNoNamesContainsNone) {
    const NameSet names;
    EXPECT_FALSE(names.contains("Width"));
}

TEST(NameSet, ContainsWholeNamesOnly) {
    NameSet names;
    names.insert("Width");
    names.insert("BitsPerSample");
    EXPECT_TRUE(names.contains("Width"));
    EXPECT_TRUE(names.contains(std::string_view("WidthUnit").substr(0, 5)));
    EXPECT_TRUE(names.contains("BitsPerSample"));
    for (const char* const other : {"W", "Widt", "Widths", "width", "Wedth", "BitsPerSamplE"}) {
        EXPECT_FALSE(names.contains(other)) << other;
    }
}

// Sixty-four names of one length and one first letter.
TEST(NameSet, TellsApartAsManyNamesAsThereIsRoomForHoweverAlike) {
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < NameSet::kMost; ++i) {
        texts.push_back("Strip" + std::to_string(10 + i));
    }
    NameSet names;
    for (const std::string& text : texts) {
        EXPECT_FALSE(names.contains(text)) << text;
        names.insert(text);
        names.insert(text);
    }
    for (const std::string& text : texts) {
        EXPECT_TRUE(names.contains(text)) << text;
    }
    EXPECT_FALSE(names.contains("Strip99"));
    EXPECT_FALSE(names.contains("Strap10"));
}

}  // namespace
}  // namespace veltrace::module
