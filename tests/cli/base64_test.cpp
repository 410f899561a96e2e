#include "base64.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <utility>

using namespace std::string_literals;

namespace veltrace::cli {
namespace {

TEST(Base64, GivesTheExamplesOfItsStandardBothWays) {
    const std::pair<std::string_view, std::string_view> examples[] = {
        {"", ""},
        {"f", "Zg=="},
        {"fo", "Zm8="},
        {"foo", "Zm9v"},
        {"foob", "Zm9vYg=="},
        {"fooba", "Zm9vYmE="},
        {"foobar", "Zm9vYmFy"},
    };
    for (const auto& [bytes, text] : examples) {
        EXPECT_EQ(base64(bytes), text);
        EXPECT_EQ(decodeBase64(text), bytes);
    }
}

TEST(Base64, TakesAnyByte) {
    EXPECT_EQ(base64("\xff\xfe\x00\xfb"s), "//4A+w==");
    EXPECT_EQ(base64("\0"s), "AA==");
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
