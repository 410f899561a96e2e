#include "render/number_text.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace veltrace::cli {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(ExactNumber, IsTheShortestTextThatReadsBack) {
    EXPECT_EQ(exactNumber(0.1), "0.1");
    EXPECT_EQ(exactNumber(1.0 / 3.0), "0.3333333333333333");
    EXPECT_EQ(exactNumber(5e-324), "5e-324");
}

TEST(ExactNumber, WholeNumbersHaveNeitherFractionNorExponent) {
    EXPECT_EQ(exactNumber(300), "300");
    EXPECT_EQ(exactNumber(9007199254740991.0), "9007199254740991");
    EXPECT_EQ(exactNumber(-4294967295.0), "-4294967295");
}

TEST(ExactNumber, KeepsTheSignOfZero) {
    EXPECT_EQ(exactNumber(-0.0), "-0");
}

TEST(ExactNumber, NamesWhatIsNoNumber) {
    EXPECT_EQ(exactNumber(-std::nan("")), "NaN");
    EXPECT_EQ(exactNumber(kInfinity), "Infinity");
    EXPECT_EQ(exactNumber(-kInfinity), "-Infinity");
}

TEST(BriefNumber, ShowsFractionsToSevenDigits) {
    EXPECT_EQ(briefNumber(0.008), "0.008");
    EXPECT_EQ(briefNumber(2.0 / 3.0), "0.6666667");
    EXPECT_EQ(briefNumber(0.3127000033855438), "0.3127");
}

TEST(BriefNumber, ShowsAllElseAsItIs) {
    EXPECT_EQ(briefNumber(9007199254740991.0), "9007199254740991");
    EXPECT_EQ(briefNumber(std::nan("")), "NaN");
    EXPECT_EQ(briefNumber(-kInfinity), "-Infinity");
}

}  // namespace
}  // namespace veltrace::cli
