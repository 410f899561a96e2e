// How message texts are composed.
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>

#include "entry/message.h"

namespace veltrace::test {

using namespace module;

namespace {

// Not named `message`, which the support library has too.
template <class... Pieces>
std::string composed(const Pieces&... pieces) {
    return veltrace::module::message(pieces...);
}

TEST(Message, JoinsItsPieces) {
    EXPECT_EQ(composed("kiln ", 'A', std::string(" has "), 3, std::string_view(" doors")),
              "kiln A has 3 doors");
}

TEST(Message, PrintsTheLimitsOfEveryNumberType) {
    EXPECT_EQ(composed(std::numeric_limits<std::uint16_t>::max()), "65535");
    EXPECT_EQ(composed(std::numeric_limits<std::int16_t>::min()), "-32768");
    EXPECT_EQ(composed(std::numeric_limits<std::uint32_t>::max()), "4294967295");
    EXPECT_EQ(composed(std::numeric_limits<std::int32_t>::min()), "-2147483648");
    EXPECT_EQ(composed(std::numeric_limits<std::uint64_t>::max()), "18446744073709551615");
    EXPECT_EQ(composed(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
}

TEST(Message, QuotesAFileName) {
    EXPECT_EQ(inQuotes("kiln.tif"), "\"kiln.tif\"");
    EXPECT_EQ(inQuotes(""), "\"\"");
}

}  // namespace

}  // namespace veltrace::test
