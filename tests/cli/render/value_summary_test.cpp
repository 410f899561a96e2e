#include "render/value_summary.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "made_values.h"

using namespace std::string_literals;

namespace veltrace::cli {
namespace {

std::string summaryOf(const std::function<qvArray*()>& make) {
    const zephra::CallResult result = called(make);
    return summary(result.output());
}

TEST(Summary, TextLosesItsTrailingNulsOnly) {
    EXPECT_EQ(summaryOf([] { return characters("kiln\0\0"s); }), "kiln");
    EXPECT_EQ(summaryOf([] { return characters("a\0b\0"s); }), R"(a\x00b)");
}

TEST(Summary, NoControlByteIsPrinted) {
    EXPECT_EQ(summaryOf([] { return characters("\x1b[2J\xff"); }), R"(\x1b[2J\xff)");
}

TEST(Summary, LongTextIsCutAndItsSizeTold) {
    EXPECT_EQ(summaryOf([] { return characters(std::string(400, 'x')); }), std::string(400, 'x'));
    EXPECT_EQ(summaryOf([] { return characters(std::string(401, 'x') + '\0'); }),
              std::string(400, 'x') + "... [401 bytes]");
}

TEST(Summary, NothingToShowIsEmpty) {
    EXPECT_EQ(summaryOf([]() -> qvArray* { return nullptr; }), "");
    EXPECT_EQ(summaryOf([] { return numbers(0, 3, {}); }), "");
    EXPECT_EQ(summaryOf([] { return characters("\0\0"s); }), "");
    EXPECT_EQ(summaryOf([] { return cells({}); }), "");
}

TEST(Summary, WholeNumbersAreShownInFull) {
    EXPECT_EQ(summaryOf([] { return qvCreateDoubleScalar(300); }), "300");
    EXPECT_EQ(summaryOf([] { return qvCreateDoubleScalar(-4294967295.0); }), "-4294967295");
    EXPECT_EQ(summaryOf([] { return qvCreateDoubleScalar(9007199254740991.0); }),
              "9007199254740991");
}

TEST(Summary, FractionsAreShownToSevenDigits) {
    EXPECT_EQ(summaryOf([] { return qvCreateDoubleScalar(0.008); }), "0.008");
    EXPECT_EQ(summaryOf([] { return qvCreateDoubleScalar(2.0 / 3.0); }), "0.6666667");
    EXPECT_EQ(summaryOf([] { return qvCreateDoubleScalar(0.3127000033855438); }), "0.3127");
}

TEST(Summary, NumbersThatAreNoneHaveNames) {
    EXPECT_EQ(summaryOf([] { return qvCreateDoubleScalar(-std::nan("")); }), "NaN");
    EXPECT_EQ(
        summaryOf([] { return qvCreateDoubleScalar(-std::numeric_limits<double>::infinity()); }),
        "-inf");
}

TEST(Summary, RowsAndColumnsReadAlike) {
    EXPECT_EQ(summaryOf([] { return numbers(1, 3, {8, 8, 8}); }), "8, 8, 8");
    EXPECT_EQ(summaryOf([] { return numbers(3, 1, {1, 2, 3}); }), "1, 2, 3");
}

TEST(Summary, AMatrixReadsRowByRow) {
    EXPECT_EQ(summaryOf([] { return numbers(2, 3, {1, 2, 3, 4, 5, 6}); }), "1, 3, 5; 2, 4, 6");
}

TEST(Summary, LongArraysAreCutAndTheirSizeTold) {
    EXPECT_EQ(summaryOf([] {
                  return numbers(12, 1, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
              }),
              "1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12");
    EXPECT_EQ(summaryOf([] {
                  return numbers(13, 1, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13});
              }),
              "1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, ... [13 x 1]");
    EXPECT_EQ(summaryOf([] {
                  return numbers(256, 3, {0.5, 0.25});
              }),
              "0.5, 0, 0; 0.25, 0, 0; 0, 0, 0; 0, 0, 0, ... [256 x 3]");
}

TEST(Summary, LogicalsAreWords) {
    EXPECT_EQ(summaryOf([] {
                  const std::array<std::size_t, 2> size{1, 2};
                  return qvCreateNumericArray(2, size.data(), qvClassLogical, qvReal);
              }),
              "false, false");
}

TEST(Summary, CellsAreJoinedAndContainersInThemNamed) {
    EXPECT_EQ(summaryOf([] {
                  return cells({characters("Unsigned integer"), characters("x")});
              }),
              "Unsigned integer, x");
    EXPECT_EQ(summaryOf([] {
                  return cells({cells({nullptr, nullptr}), structures({{{"A", nullptr}}})});
              }),
              "[2 x 1 cell], [1 x 1 struct]");
}

}  // namespace
}  // namespace veltrace::cli
