#include "amount.h"

#include <gtest/gtest.h>

namespace veltrace::cli {
namespace {

TEST(Count, IsAWholeNumberAndNothingElse) {
    EXPECT_EQ(parseCount("0"), 0U);
    EXPECT_EQ(parseCount("0012"), 12U);
    EXPECT_EQ(parseCount("18446744073709551615"), 18446744073709551615U);
    for (const char* text : {"", "-1", "+1", " 1", "1 ", "1.0", "1e3", "0x10", "K", "1K", "ten",
                             "18446744073709551616", "99999999999999999999999"}) {
        EXPECT_EQ(parseCount(text), std::nullopt) << text;
    }
}

TEST(Size, IsInBytesOrLargerUnitsAndNothingElse) {
    EXPECT_EQ(parseSize("1000"), 1000U);
    EXPECT_EQ(parseSize("1K"), 1024U);
    EXPECT_EQ(parseSize("64m"), 67108864U);
    EXPECT_EQ(parseSize("3G"), 3221225472U);
    EXPECT_EQ(parseSize("2t"), 2199023255552U);
    EXPECT_EQ(parseSize("0G"), 0U);
    EXPECT_EQ(parseSize("16777215T"), 16777215U * 1099511627776U);
    for (const char* text : {"", "K", "-1K", "1.5G", "1KB", "1 K", "1KK", "5Q", "1P", "16777216T",
                             "18446744073709551615K"}) {
        EXPECT_EQ(parseSize(text), std::nullopt) << text;
    }
}

}  // namespace
}  // namespace veltrace::cli
