#include "render/json_check.h"

#include <gtest/gtest.h>
#include <string>

#include "render/json_writer.h"

using namespace std::string_literals;

namespace veltrace::cli {
namespace {

/// Whether the check returns `expected` for texts of up to 40 bytes with `piece` at any place. It
/// tests several bytes at once, so that neighbours and places may matter.
testing::AssertionResult saysEverywhere(bool expected, const std::string& piece) {
    for (std::size_t others = 0; others + piece.size() <= 40; ++others) {
        const std::string without = "[\"" + std::string(others, 'a') + "\"]";
        for (std::size_t place = 0; place <= others; ++place) {
            if (isJsonArray(std::string(without).insert(2 + place, piece)) != expected) {
                return testing::AssertionFailure()
                       << testing::PrintToString(piece) << " at " << place << " among " << others;
            }
        }
    }
    return testing::AssertionSuccess();
}

TEST(JsonCheck, AcceptsArraysOfEveryKindOfValue) {
    for (const char* const json :
         {"[]", "[{}]",
          R"([{"Width":7,"Make":"Kiln\u0000","A":[1,-2.5e-07,null],"B":[true,false]}])",
          R"(["\"\\\b\f\n\r\t\u001b\u0085\u2028\u2029"])",
          "[\"\u00e9\u65e5\U0001F4F7\u00a0\u2027\"]", R"(["\\uD800"])"}) {
        EXPECT_TRUE(isJsonArray(json)) << json;
    }
}

TEST(JsonCheck, RejectsAnythingButOneArray) {
    for (const char* const json :
         {"", "{}", "null", "\"[]\"", "[", "]", "[]]", "[][]", "[],[]", " []", "[1,]", "[,1]",
          "[1 2]", "[{]}", "[{\"a\"}]", "[{\"a\":}]", "[{1:2}]", "[{\"a\":1,}]", "[\"a]",
          // Words and numbers of other languages.
          "[NaN]", "[Infinity]", "[-Infinity]", "[nul]", "[True]", "[01]", "[1.]", "[.5]", "[+1]",
          "[-]", "[1e]", "[0x1]", "['a']", "[/**/1]"}) {
        EXPECT_FALSE(isJsonArray(json)) << json;
    }
}

TEST(JsonCheck, RejectsUnescapedControlsAndSeparators) {
    for (int code = 0; code < 0x20; ++code) {
        EXPECT_FALSE(isJsonArray("[\""s + static_cast<char>(code) + "\"]")) << code;
        EXPECT_FALSE(isJsonArray("[1,"s + static_cast<char>(code) + "1]")) << code;
        EXPECT_FALSE(isJsonArray("[]"s + static_cast<char>(code))) << code;
    }
    for (const char* const text : {"\x7f", "\u0080", "\u0085", "\u009f", "\u2028", "\u2029"}) {
        EXPECT_FALSE(isJsonArray("[\""s + text + "\"]")) << testing::PrintToString(text);
    }
}

TEST(JsonCheck, RejectsTextThatIsNotUnicode) {
    for (const char* const text :
         {"\xff", "\x80", "\xc0\x80", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\xc3", "\xe2", "\xc2",
          R"(\ud800)", R"(\udc00)", R"(\uD83D\uDCF7)", R"(\x41)", R"(\u00g0)", R"(\u00)", R"(\)"}) {
        EXPECT_FALSE(isJsonArray("[\""s + text + "\"]")) << testing::PrintToString(text);
    }
}

TEST(JsonCheck, AcceptsPrintableAsciiAndRejectsOtherBytesAtEveryPlace) {
    for (char character = ' '; character <= '~'; ++character) {
        if (character != '"' && character != '\\') {
            EXPECT_TRUE(saysEverywhere(true, std::string(1, character)));
        }
    }
    EXPECT_TRUE(saysEverywhere(false, "\""));
    for (char control = 0; control < ' '; ++control) {
        EXPECT_TRUE(saysEverywhere(false, std::string(1, control)));
    }
    EXPECT_TRUE(saysEverywhere(false, "\x7f"));
    EXPECT_TRUE(saysEverywhere(false, "~\x7f\x7f~"));
    for (int byte = 0x80; byte <= 0xFF; ++byte) {
        EXPECT_TRUE(saysEverywhere(false, std::string(1, static_cast<char>(byte))));
    }
}

TEST(JsonCheck, AcceptsOtherCharactersAndItsOwnEscapesAtEveryPlace) {
    for (const char* const taken : {"\u00a0", "\u00ff", "\u0101", "\u07ff", "\u0800", "\u2027",
                                    "\u202a", "\uffff", "\U00010000", "\U0010ffff"}) {
        EXPECT_TRUE(saysEverywhere(true, taken));
    }
    for (const char* const refused : {"\u0080", "\u009f", "\u2028", "\u2029", "\xed\xa0\x80"}) {
        EXPECT_TRUE(saysEverywhere(false, refused));
    }
    for (const char* const taken : {R"(\\)", R"(\")", R"(\b)", R"(\n)", R"(\u0000)", R"(\u007f)",
                                    R"(\u2028)", R"(\\u1234)", R"(\\\\ud800)"}) {
        EXPECT_TRUE(saysEverywhere(true, taken));
    }
    for (const char* const refused :
         {R"(\)", R"(\\\)", R"(\x)", R"(\u12)", R"(\u1234)", R"(\ud83d\udcf7)", R"(\\\u1234)"}) {
        EXPECT_TRUE(saysEverywhere(false, refused));
    }
}

TEST(JsonCheck, AcceptsTheMaximalDepthAndNoMore) {
    const std::string open(kMaxJsonDepth, '[');
    const std::string close(kMaxJsonDepth, ']');
    EXPECT_TRUE(isJsonArray(open + close));
    EXPECT_FALSE(isJsonArray("[" + open + close + "]"));
    EXPECT_FALSE(isJsonArray(std::string(std::size_t{32} << 20, '[')));
}

TEST(JsonCheck, AcceptsListsOfTheirKindAndShapeOnly) {
    for (const auto kind : {ListedAs::nonfinite, ListedAs::latin1, ListedAs::omitted}) {
        EXPECT_TRUE(isListOf(kind, ""));
    }
    EXPECT_TRUE(isListOf(ListedAs::nonfinite, R"({"at":"/info/0/A","is":"NaN"})"));
    EXPECT_TRUE(
        isListOf(ListedAs::nonfinite,
                 R"({"at":"/info/0/A/2","is":"Infinity"},{"at":"/info/1/A","is":"-Infinity"})"));
    EXPECT_TRUE(isListOf(ListedAs::latin1, R"("/info/0/Make","/info/0/\"~1\u001b")"));
    EXPECT_TRUE(
        isListOf(ListedAs::omitted,
                 R"({"at":"/info/0/A","size":[1,4294967296]},{"at":"/info/0/B","size":[0,2]})"));
    const std::string nan = R"({"at":"/info/0/A","is":"NaN"})";
    for (const std::string& list :
         {"," + nan, nan + ",", nan + nan, "[" + nan + "]", nan + "]", nan + ",1",
          R"("/info/0/A")"s, R"({"at":"/info/0/A"})"s, R"({"is":"NaN","at":"/info/0/A"})"s,
          R"({"at":"/info/0/A","is":"nan"})"s, R"({"at":"/info/0/A","is":null})"s,
          R"({"at":"/path","is":"NaN"})"s, R"({"at":"/info/0/A","is":"NaN","x":1})"s,
          R"({"at":"/info/0/A","at":"/info/0/A"})"s, std::string(1 << 20, '['), "null"s, "\n"s}) {
        EXPECT_FALSE(isListOf(ListedAs::nonfinite, list)) << list.substr(0, 99);
    }
    for (const char* const list : {"1", "null", R"("/error/text")", R"(["/info/0"])", R"("\n")",
                                   "\"/info/\x80\"", "\"/info/\n\"", R"("/info/0","NaN")"}) {
        EXPECT_FALSE(isListOf(ListedAs::latin1, list)) << list;
    }
    for (const char* const size : {"1", "[]", "[1]", "[1,2,3]", "[1,-2]", "[1,2.5]", "[1,\"2\"]",
                                   "[1,18446744073709551616]", "null"}) {
        const std::string list = R"({"at":"/info/0/A","size":)"s + size + "}";
        EXPECT_FALSE(isListOf(ListedAs::omitted, list)) << list;
    }
}

}  // namespace
}  // namespace veltrace::cli
