// The compile-time checks of the tables, and the lookups.
#include <gtest/gtest.h>

#include "tag/tag_name.h"
#include "tag/words.h"

namespace veltrace::test {

using namespace module;

namespace {

TEST(WordRows, MustAscendWithoutRepetition) {
    EXPECT_TRUE(strictlyAscending(std::span<const Word>{}));
    EXPECT_TRUE(strictlyAscending({{Word{1, "clay"}, Word{2, "ash"}, Word{5, "salt"}}}));
    EXPECT_FALSE(strictlyAscending({{Word{1, "clay"}, Word{2, "ash"}, Word{2, "salt"}}}));
    EXPECT_FALSE(strictlyAscending({{Word{1, "clay"}, Word{5, "ash"}, Word{2, "salt"}}}));
}

TEST(WordTable, ReturnsItsFallbackForAnyOtherCode) {
    static constexpr Word kRows[] = {{1, "clay"}, {3, "ash"}};
    constexpr WordTable kGlazes{1, kRows, "none"};
    EXPECT_EQ(wordFor(kGlazes, 0), "none");
    EXPECT_EQ(wordFor(kGlazes, 1), "clay");
    EXPECT_EQ(wordFor(kGlazes, 2), "none");
    EXPECT_EQ(wordFor(kGlazes, 3), "ash");
    EXPECT_EQ(wordFor(kGlazes, 4), "none");
}

TEST(NameRows, MustAscendWithoutRepetition) {
    EXPECT_TRUE(strictlyAscending(std::span<const TagName>{}));
    EXPECT_TRUE(strictlyAscending({{TagName{1, "Clay"}, TagName{2, "Ash"}}}));
    EXPECT_FALSE(strictlyAscending({{TagName{2, "Clay"}, TagName{2, "Ash"}}}));
    EXPECT_FALSE(strictlyAscending({{TagName{2, "Clay"}, TagName{1, "Ash"}}}));
}

TEST(NameRows, ReturnAnEmptyNameForAnyOtherId) {
    static constexpr TagName kRows[] = {{1, "Clay"}, {3, "Ash"}};
    EXPECT_EQ(nameIn(kRows, 0), "");
    EXPECT_EQ(nameIn(kRows, 1), "Clay");
    EXPECT_EQ(nameIn(kRows, 2), "");
    EXPECT_EQ(nameIn(kRows, 3), "Ash");
    EXPECT_EQ(nameIn(kRows, 4), "");
}

}  // namespace

}  // namespace veltrace::test
