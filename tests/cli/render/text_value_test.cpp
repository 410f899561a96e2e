#include "render/text_value.h"

#include <cmath>
#include <gtest/gtest.h>

#include "made_values.h"

using namespace std::string_literals;

namespace veltrace::cli {
namespace {

constexpr std::size_t kPlenty = 1000;

std::string textOf(const Make& make, std::size_t maxValues = kPlenty, bool hasColour = false) {
    const zephra::CallResult result = called(make);
    Allowance allowance(10'000);
    BoundedText out(allowance);
    TextValueWriter(out, maxValues, TextStyle(hasColour)).write(result.output());
    return out.text();
}

bool isBlankValue(const Make& make) {
    return isBlank(called(make).output());
}

TEST(TextValue, TextLosesTrailingNulsAndEscapesControlBytes) {
    EXPECT_EQ(textOf(characters("kiln\0\0"s)), "kiln");
    EXPECT_EQ(textOf(characters("a\0b\0"s)), R"(a\x00b)");
    EXPECT_EQ(textOf(characters("\0\0"s)), "");
    EXPECT_EQ(textOf(characters("\x1b[2J\xff\u202e\n")), R"(\x1b[2J\xff\xe2\x80\xae\n)");
}

TEST(TextValue, LongTextsAndArraysAreCutAndShowTheirSizeDimWithColour) {
    EXPECT_EQ(textOf(characters(std::string(400, 'x'))), std::string(400, 'x'));
    EXPECT_EQ(textOf(characters(std::string(401, 'x') + '\0')),
              std::string(400, 'x') + "... [401 bytes]");
    const auto three = numbers(3, 1, {1, 2, 3});
    EXPECT_EQ(textOf(three, 3), "1, 2, 3");
    EXPECT_EQ(textOf(three, 2), "1, 2, ... [3 x 1]");
    EXPECT_EQ(textOf(three, 0), "... [3 x 1]");
    EXPECT_EQ(textOf(numbers(256, 3, {0.5, 0.25}), 4), "0.5, 0, 0; 0.25, ... [256 x 3]");
    EXPECT_EQ(textOf(numbers(3, 1, {1, 2, 3}), 1, true), "1, ... \x1b[2m[3 x 1]\x1b[0m");
    EXPECT_EQ(textOf(characters(std::string(401, 'x')), 1, true),
              std::string(400, 'x') + "... \x1b[2m[401 bytes]\x1b[0m");
}

TEST(TextValue, ElementsAreShownRowByRow) {
    EXPECT_EQ(textOf(number(-4294967295.0)), "-4294967295");
    EXPECT_EQ(textOf(number(2.0 / 3.0)), "0.6666667");
    EXPECT_EQ(textOf(number(-HUGE_VAL)), "-Infinity");
    EXPECT_EQ(textOf(numbers(1, 3, {8, 9, 10})), "8, 9, 10");
    EXPECT_EQ(textOf(numbers(3, 1, {1, 2, 3})), "1, 2, 3");
    EXPECT_EQ(textOf(numbers(2, 3, {1, 2, 3, 4, 5, 6})), "1, 3, 5; 2, 4, 6");
    EXPECT_EQ(textOf(logicals(1, 2, {0, 1})), "false, true");
    EXPECT_EQ(textOf(nullptr), "");
    EXPECT_EQ(textOf(numbers(0, 3, {})), "");
}

TEST(TextValue, CellsAreJoinedAndContainersReplacedByTheirSize) {
    EXPECT_EQ(textOf(cells({characters("Unsigned integer"), numbers(2, 1, {1, 2})})),
              "Unsigned integer, 1, 2");
    EXPECT_EQ(textOf(cells({cells({nullptr, nullptr}), structures({{{"A", nullptr}}})})),
              "[2 x 1 cell], [1 x 1 struct]");
    EXPECT_EQ(textOf(structures({{{"A", nullptr}}, {{"A", nullptr}}})), "[2 x 1 struct]");
}

TEST(IsBlank, IsTrueForEmptyValuesAndTextOfNulsOnly) {
    EXPECT_TRUE(isBlankValue(nullptr));
    EXPECT_TRUE(isBlankValue(numbers(0, 3, {})));
    EXPECT_TRUE(isBlankValue(cells({})));
    EXPECT_TRUE(isBlankValue(characters("")));
    EXPECT_TRUE(isBlankValue(characters("\0\0"s)));
    EXPECT_FALSE(isBlankValue(number(0)));
    EXPECT_FALSE(isBlankValue(characters("\0 "s)));
    EXPECT_FALSE(isBlankValue(structures({{{"A", nullptr}}})));
}

}  // namespace
}  // namespace veltrace::cli
