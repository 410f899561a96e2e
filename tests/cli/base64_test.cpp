#include "base64.h"

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

TEST(Base64, TheExamplesOfItsStandardComeBack) {
    EXPECT_EQ(decodeBase64(""), "");
    EXPECT_EQ(decodeBase64("Zg=="), "f");
    EXPECT_EQ(decodeBase64("Zm8="), "fo");
    EXPECT_EQ(decodeBase64("Zm9v"), "foo");
    EXPECT_EQ(decodeBase64("Zm9vYg=="), "foob");
    EXPECT_EQ(decodeBase64("Zm9vYmE="), "fooba");
    EXPECT_EQ(decodeBase64("Zm9vYmFy"), "foobar");
}

TEST(Base64, HoldsEveryBit) {
    EXPECT_EQ(decodeBase64("AAAA"), "\0\0\0"s);
    EXPECT_EQ(decodeBase64("////"), "\xff\xff\xff");
    EXPECT_EQ(decodeBase64("+/+/"), "\xfb\xff\xbf");
    EXPECT_EQ(decodeBase64("/w=="), "\xff");
}

TEST(Base64, OfAnyOtherTextIsRefused) {
    for (const char* text : {"Z", "Zg", "Zg=", "Zg===", "====", "Z===", "=Zg=", "Zm=v", "Zm9v\n",
                             "Zm9v====", "Zm-_", " Zm9", "Zh==", "Zm9="}) {
        EXPECT_EQ(decodeBase64(text), std::nullopt) << text;
    }
}

}  // namespace
}  // namespace veltrace::cli
