#include "render/csv_value.h"

#include <cmath>
#include <gtest/gtest.h>

#include "made_values.h"

using namespace std::string_literals;

namespace veltrace::cli {
namespace {

std::string csvOf(const Make& make, std::size_t limit = 10'000) {
    const zephra::CallResult result = called(make);
    Allowance allowance(limit);
    BoundedText out(allowance);
    appendCsvValue(out, result.output());
    return out.text();
}

TEST(CsvValue, TextLosesTrailingNulsAndEscapesControlBytes) {
    EXPECT_EQ(csvOf(characters(std::string(1000, 'x') + "\0\0"s)), std::string(1000, 'x'));
    EXPECT_EQ(csvOf(characters("a\0b"s)), R"(a\x00b)");
    EXPECT_EQ(csvOf(characters("a\tb\r\n\x1b\xff\\")), R"(a\tb\r\n\x1b\xff\\)");
}

TEST(CsvValue, ElementsAreJoinedRowByRowWithABlank) {
    EXPECT_EQ(csvOf(number(1.0 / 3.0)), "0.3333333333333333");
    EXPECT_EQ(csvOf(number(4294967295.0)), "4294967295");
    EXPECT_EQ(csvOf(number(std::nan(""))), "NaN");
    EXPECT_EQ(csvOf(number(-HUGE_VAL)), "-Infinity");
    EXPECT_EQ(csvOf(numbers(3, 1, {47, 22, 11.9})), "47 22 11.9");
    EXPECT_EQ(csvOf(numbers(2, 3, {1, 2, 3, 4, 5, 6})), "1 3 5 2 4 6");
    EXPECT_EQ(csvOf(cells({characters("ab"), numbers(1, 2, {1, 2}), nullptr})), "ab 1 2 ");
    EXPECT_EQ(csvOf(logicals(1, 2, {1, 0})), "true false");
    EXPECT_EQ(csvOf(nullptr), "");
    EXPECT_EQ(csvOf(numbers(0, 3, {})), "");
}

TEST(CsvValue, ContainersAreReplacedByTheirSize) {
    EXPECT_EQ(csvOf(structures({{{"A", nullptr}}, {{"A", nullptr}}})), "[2 x 1 struct]");
    EXPECT_EQ(csvOf(cells({cells({nullptr}), structures({{{"A", nullptr}}})})),
              "[1 x 1 cell] [1 x 1 struct]");
}

TEST(CsvValue, TooManyBytesAreRejected) {
    const auto make = numbers(3, 1, {1, 2, 3});
    EXPECT_EQ(csvOf(make, 5), "1 2 3");
    EXPECT_THROW(csvOf(make, 4), OutputTooLarge);
}

}  // namespace
}  // namespace veltrace::cli
