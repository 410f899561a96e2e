#include "record/base64.h"

#include <gtest/gtest.h>

using namespace std::string_literals;

namespace veltrace::cli {
namespace {

TEST(Base64, GivesTheExamplesOfItsStandard) {
    EXPECT_EQ(base64(""), "");
    EXPECT_EQ(base64("f"), "Zg==");
    EXPECT_EQ(base64("fo"), "Zm8=");
    EXPECT_EQ(base64("foo"), "Zm9v");
    EXPECT_EQ(base64("foob"), "Zm9vYg==");
    EXPECT_EQ(base64("fooba"), "Zm9vYmE=");
    EXPECT_EQ(base64("foobar"), "Zm9vYmFy");
}

TEST(Base64, TakesAnyByte) {
    EXPECT_EQ(base64("\xff\xfe\x00\xfb"s), "//4A+w==");
    EXPECT_EQ(base64("\0"s), "AA==");
}

}  // namespace
}  // namespace veltrace::cli
