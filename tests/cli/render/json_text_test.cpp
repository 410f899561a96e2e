#include "render/json_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

using namespace std::string_literals;

namespace veltrace::cli {
namespace {

struct Written {
    std::string json;
    bool isUtf8;
};

Written written(std::string_view bytes) {
    Allowance allowance(1000);
    BoundedText out(allowance);
    const bool isValid = appendText(out, bytes);
    return {out.text(), isValid};
}

std::string valid(std::string_view utf8) {
    const Written result = written(utf8);
    EXPECT_TRUE(result.isUtf8);
    return result.json;
}

std::string invalid(std::string_view bytes) {
    const Written result = written(bytes);
    EXPECT_FALSE(result.isUtf8);
    return result.json;
}

std::string number(double value) {
    Allowance allowance(100);
    BoundedText out(allowance);
    appendNumber(out, value);
    return out.text();
}

TEST(JsonText, EscapesControlsAndLineSeparatorsOnly) {
    EXPECT_EQ(valid(""), R"("")");
    EXPECT_EQ(valid("Kiln & Co"), R"("Kiln & Co")");
    EXPECT_EQ(valid("\u65e5\u672c\U0001F4F7\u00a0\u20ac"),
              "\"\u65e5\u672c\U0001F4F7\u00a0\u20ac\"");
    EXPECT_EQ(valid("\uFEFF\uFFFE\U0010FFFF"), "\"\uFEFF\uFFFE\U0010FFFF\"");
    EXPECT_EQ(valid("say \"hi\" \\ /"), R"("say \"hi\" \\ /")");
    EXPECT_EQ(valid("\b\f\n\r\t"), R"("\b\f\n\r\t")");
    EXPECT_EQ(valid("kiln\0\0"s), R"("kiln\u0000\u0000")");
    EXPECT_EQ(valid("\x1b[31m\x1f"), R"("\u001b[31m\u001f")");
    EXPECT_EQ(valid("~\x7f"), R"("~\u007f")");
    EXPECT_EQ(valid("\u0080\u0085\u009f\u00a0"), "\"\\u0080\\u0085\\u009f\u00a0\"");
    EXPECT_EQ(valid("\u2027\u2028\u2029\u202a"), "\"\u2027\\u2028\\u2029\u202a\"");
    EXPECT_EQ(valid("\u20a8\u2128"), "\"\u20a8\u2128\"");
}

TEST(JsonText, OtherTextBecomesCharactersByteByByte) {
    EXPECT_EQ(invalid("caf\xe9"), "\"caf\u00e9\"");
    EXPECT_EQ(invalid("\xff\"\n\x85\x7f\0"s), "\"\u00ff\\\"\\n\\u0085\\u007f\\u0000\"");
    // Its valid characters too: otherwise one could not be distinguished from two bytes.
    EXPECT_EQ(invalid("\u00e9\xe9"), "\"\u00c3\u00a9\u00e9\"");
    EXPECT_EQ(asCharacters("\u00e9"), "\u00e9");
    EXPECT_EQ(asCharacters("\u00e9\x80"), "\u00c3\u00a9\u0080");
}

TEST(JsonText, RejectsInvalidUtf8) {
    const std::string pad(21, 'a');  // so that every place within a block is tested
    for (std::size_t before = 0; before < pad.size(); ++before) {
        const std::string start = pad.substr(0, before);
        for (const char* const good : {"\u007f", "\u0080", "\u07ff", "\u0800", "\ud7ff", "\ue000",
                                       "\U00010000", "\U0010ffff"}) {
            EXPECT_TRUE(isUtf8(start + good)) << start << good;
            EXPECT_TRUE(isUtf8(start + good + pad)) << start << good;
        }
        for (const char* const bad : {"\x80",
                                      "\xbf",
                                      "\xc0\x80",
                                      "\xc1\xbf",
                                      "\xe0\x80\x80",
                                      "\xe0\x9f\xbf",
                                      "\xed\xa0\x80",
                                      "\xed\xbf\xbf",
                                      "\xf0\x80\x80\x80",
                                      "\xf0\x8f\xbf\xbf",
                                      "\xf4\x90\x80\x80",
                                      "\xf5\x80\x80\x80",
                                      "\xfe",
                                      "\xff",
                                      "\xc3",
                                      "\xe2\x82",
                                      "\xf0\x9f\x93",
                                      "\xc3(",
                                      "\xe2(\xa1",
                                      "\xf0\x9f(\x93"}) {
            EXPECT_FALSE(isUtf8(start + bad)) << testing::PrintToString(bad);
            EXPECT_FALSE(isUtf8(start + bad + pad)) << testing::PrintToString(bad);
        }
    }
}

TEST(JsonText, StaysWithinItsLimit) {
    Allowance enough(10);
    BoundedText out(enough);
    EXPECT_TRUE(appendText(out, "ab\u2028"));
    EXPECT_EQ(out.text(), R"("ab\u2028")");
    EXPECT_THROW(appendText(out, ""), OutputTooLarge);
}

TEST(JsonNumber, IsTheShortestThatReadsBack) {
    // Without fraction and exponent if whole.
    EXPECT_EQ(number(0.0), "0");
    EXPECT_EQ(number(-1.0), "-1");
    EXPECT_EQ(number(4294967295.0), "4294967295");
    EXPECT_EQ(number(1e15), "1000000000000000");
    EXPECT_EQ(number(9007199254740991.0), "9007199254740991");
    EXPECT_EQ(number(-9007199254740991.0), "-9007199254740991");
    // The sign of zero is kept.
    EXPECT_EQ(number(-0.0), "-0.0");
    // Otherwise with all that is needed.
    EXPECT_EQ(number(0.1), "0.1");
    EXPECT_EQ(number(-2.5), "-2.5");
    EXPECT_EQ(number(1.0 / 3.0), "0.3333333333333333");
    EXPECT_EQ(number(0.0001), "0.0001");
    EXPECT_EQ(number(1e-5), "1e-05");
    EXPECT_EQ(number(1e300), "1e+300");
    EXPECT_EQ(number(18446744073709551615.0), "1.8446744073709552e+19");
    EXPECT_EQ(number(std::numeric_limits<double>::denorm_min()), "5e-324");
    EXPECT_EQ(number(-std::numeric_limits<double>::max()), "-1.7976931348623157e+308");
    EXPECT_EQ(number(4503599627370495.5), "4503599627370495.5");
    EXPECT_EQ(number(-4503599627370495.5), "-4503599627370495.5");
}

std::string numbers(const std::vector<double>& values) {
    Allowance allowance(100'000);
    BoundedText out(allowance);
    appendNumbers(out, values);
    return out.text();
}

TEST(JsonNumbers, HaveCommasBetweenAndMayExceedAnyBuffer) {
    EXPECT_EQ(numbers({}), "");
    EXPECT_EQ(numbers({7}), "7");
    EXPECT_EQ(numbers({0, -0.0, 0.5, -17, 1e300}), "0,-0.0,0.5,-17,1e+300");
    constexpr std::size_t kMany = 1000;
    std::string expected = "-2.2250738585072014e-308";  // no number is longer
    for (std::size_t i = 1; i < kMany; ++i) {
        expected += ",-2.2250738585072014e-308";
    }
    EXPECT_EQ(numbers(std::vector<double>(kMany, -std::numeric_limits<double>::min())), expected);
}

TEST(JsonNumbers, StayWithinTheirLimit) {
    Allowance allowance(5);
    BoundedText out(allowance);
    const std::vector<double> three{1, 2, 3};
    appendNumbers(out, three);
    EXPECT_EQ(out.text(), "1,2,3");
    EXPECT_THROW(appendNumbers(out, three), OutputTooLarge);
}

}  // namespace
}  // namespace veltrace::cli
