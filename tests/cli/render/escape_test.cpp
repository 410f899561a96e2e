#include "render/escape.h"

#include <gtest/gtest.h>

using namespace std::string_literals;

namespace veltrace::cli {
namespace {

TEST(Visible, KeepsPrintableTextOfAnyScript) {
    EXPECT_EQ(visible("plain ~ text"), "plain ~ text");
    EXPECT_EQ(visible("Stra\u00dfe \u65e5\u672c \U0001f5bc"),
              "Stra\u00dfe \u65e5\u672c \U0001f5bc");
    EXPECT_EQ(visible(""), "");
    // The neighbours of every control character.
    const std::string neighbours = " ~\u00a0\u061b\u061d\u200d\u2010\u2027\u202f\u2065\u206a";
    EXPECT_EQ(visible(neighbours), neighbours);
}

TEST(Visible, EscapesControlCharactersAndInvalidUtf8) {
    EXPECT_EQ(visible("a\nb\rc\td"), R"(a\nb\rc\td)");
    EXPECT_EQ(visible("\0\x01\x1b[2J\x1f\x7f"s), R"(\x00\x01\x1b[2J\x1f\x7f)");
    // C1 controls, line separators and direction marks, byte by byte.
    EXPECT_EQ(visible("\xc2\x80\xc2\x9b\xc2\x9f\xc2\xa0"), "\\xc2\\x80\\xc2\\x9b\\xc2\\x9f\u00a0");
    EXPECT_EQ(visible("a\u2028\u2029"), R"(a\xe2\x80\xa8\xe2\x80\xa9)");
    EXPECT_EQ(visible("\u061c"), R"(\xd8\x9c)");
    EXPECT_EQ(visible("\u200e\u200f"), R"(\xe2\x80\x8e\xe2\x80\x8f)");
    EXPECT_EQ(visible("\u202a\u202e"), R"(\xe2\x80\xaa\xe2\x80\xae)");
    EXPECT_EQ(visible("\u2066\u2069"), R"(\xe2\x81\xa6\xe2\x81\xa9)");
    // A backslash is doubled, so that escapes cannot be forged.
    EXPECT_EQ(visible(R"(C:\x1b)"), R"(C:\\x1b)");
    EXPECT_EQ(visible("\x9b\xff"), R"(\x9b\xff)");
    EXPECT_EQ(visible("\xc3"), R"(\xc3)");                          // cut short
    EXPECT_EQ(visible("\xe2\x82"), R"(\xe2\x82)");                  // cut short
    EXPECT_EQ(visible("\xc0\xaf"), R"(\xc0\xaf)");                  // overlong '/'
    EXPECT_EQ(visible("\xed\xa0\x80"), R"(\xed\xa0\x80)");          // a surrogate
    EXPECT_EQ(visible("\xf4\x90\x80\x80"), R"(\xf4\x90\x80\x80)");  // above U+10FFFF
    EXPECT_EQ(visible("\xc3z"), R"(\xc3z)");                        // the next character survives
}

TEST(IsPrintable, IsTrueForWhatVisibleReturnsOnly) {
    EXPECT_TRUE(isPrintable(""));
    EXPECT_TRUE(isPrintable("plain ~ text \\ Stra\u00dfe \U0001f5bc"));
    EXPECT_TRUE(isPrintable(visible("\0\x1b\x7f\xff\u0085\u2028\u202e\n"s)));
    for (const char* const bytes :
         {"a\n", "\x1b[m", "\t", "\x7f", "\u0080", "\u009f", "\u061c", "\u200e", "\u2028", "\u202c",
          "\u2067", "caf\xe9", "\xc0\xaf"}) {
        EXPECT_FALSE(isPrintable(bytes)) << visible(bytes);
    }
    EXPECT_FALSE(isPrintable("\0"s));
}

TEST(FirstBytes, AreCutBetweenCharacters) {
    EXPECT_EQ(firstBytes("abc", 3), "abc");
    EXPECT_EQ(firstBytes("", 0), "");
    EXPECT_EQ(firstBytes("abcd", 3), "abc");
    EXPECT_EQ(firstBytes("a\u00e9b", 2), "a");
    EXPECT_EQ(firstBytes("a\u00e9b", 3), "a\u00e9");
    EXPECT_EQ(firstBytes("\U0001f5bc", 3), "");
    EXPECT_EQ(firstBytes("\xff\xff\xff", 2), "\xff\xff");
}

TEST(FinalNuls, AreRemovedAndNoOthers) {
    EXPECT_EQ(withoutFinalNuls("ember"), "ember");
    EXPECT_EQ(withoutFinalNuls(std::string("a\0b\0\0", 5)), std::string("a\0b", 3));
    EXPECT_EQ(withoutFinalNuls(std::string(3, '\0')), "");
    EXPECT_EQ(withoutFinalNuls(""), "");
}

}  // namespace
}  // namespace veltrace::cli
