// Formats of messages: literals are interpreted, other texts are not.
#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "run.h"

namespace zephra {
namespace {

// The text of the one warning that `format` and `arguments` produce.
template <class... Arguments>
std::string warned(const char* format, Arguments... arguments) {
    const CallResult result = run([&] { qvxWarnMsgIdAndTxt("a:b", format, arguments...); });
    return result.warnings().at(0).text;
}

TEST(LiteralFormat, PrintsStringsAndCharacters) {
    EXPECT_EQ(warned(""), "");
    EXPECT_EQ(warned("Could not open the file.\n"), "Could not open the file.\n");
    EXPECT_EQ(warned("Could not open file \"%s\".", "a.tif"), "Could not open file \"a.tif\".");
    EXPECT_EQ(warned("[%6s][%-6s][%.2s]", "abc", "abc", "abc"), "[   abc][abc   ][ab]");
    EXPECT_EQ(warned("%c%c", 'o', 'k'), "ok");
    EXPECT_EQ(warned("[%3c]", 'x'), "[  x]");
    EXPECT_EQ(warned("<%s>", "%s%n%d"), "<%s%n%d>");
    EXPECT_EQ(warned("<%s>", static_cast<const char*>(nullptr)), "<(null)>");
    EXPECT_EQ(warned("100%% of %d%%", 7), "100% of 7%");
}

TEST(LiteralFormat, PrintsNumbersOfEachLength) {
    EXPECT_EQ(warned("%d %i %u %x", -5, 7, 4000000000U, 255U), "-5 7 4000000000 ff");
    EXPECT_EQ(warned("%ld %lu", -5000000000L, 5000000000UL), "-5000000000 5000000000");
    EXPECT_EQ(warned("%lld %llu %llx", -1LL, 18446744073709551615ULL, 1ULL << 40),
              "-1 18446744073709551615 10000000000");
    EXPECT_EQ(warned("%zu %zd", sizeof(double), std::ptrdiff_t{-8}), "8 -8");
    EXPECT_EQ(warned("[%5d][%-5d][%05d][%+d][% d][%.3d][%#x]", 42, 42, 42, 42, 42, 42, 42U),
              "[   42][42   ][00042][+42][ 42][042][0x2a]");
    EXPECT_EQ(warned("%f %.2f %g %8.3g|", 1.5, 2.345678, 0.1, 1234.5),
              "1.500000 2.35 0.1 1.23e+03|");
    EXPECT_EQ(warned("%s %d %g %s %lld %f %c %zu %d %s", "a", 1, 2.5, "b", 3LL, 0.5, 'c',
                     std::size_t{4}, 5, "d"),
              "a 1 2.5 b 3 0.500000 c 4 5 d");
}

TEST(LiteralFormat, EndsAtAnUnknownConversion) {
    int written = -1;
    EXPECT_EQ(warned("%d%n%d", 1, &written, 2), "1%n%d");
    EXPECT_EQ(written, -1);
    EXPECT_EQ(warned("%d %*d %d", 1, 5, 2, 3), "1 %*d %d");
    EXPECT_EQ(warned("%d %.*f", 1, 5, 2.0), "1 %.*f");
    EXPECT_EQ(warned("%p", "x"), "%p");
    EXPECT_EQ(warned("%ls", L"x"), "%ls");
    EXPECT_EQ(warned("%1$s", "x"), "%1$s");
    EXPECT_EQ(warned("%hhd %d", 1, 2), "%hhd %d");
    EXPECT_EQ(warned("100%"), "100%");
    EXPECT_EQ(warned("%-08.3l"), "%-08.3l");
}

TEST(LiteralFormat, LimitsWidthPrecisionAndText) {
    EXPECT_EQ(warned("%99999999d", 7), std::string(1023, ' ') + "7");
    EXPECT_EQ(warned("%.99999999d", 7), std::string(1023, '0') + "7");
    EXPECT_EQ(warned("%99999999999999999999s", "x"), std::string(1023, ' ') + "x");
    const std::string large(100'000, 'x');
    EXPECT_EQ(warned("%s", large.c_str()), std::string(65'536, 'x'));
    EXPECT_EQ(warned("> %s", large.c_str()), "> " + std::string(65'534, 'x'));
    EXPECT_EQ(warned("%s%s and more", large.c_str(), large.c_str()), std::string(65'536, 'x'));
}

TEST(ComposedText, IsPrintedAsItStands) {
    for (const char* const hostile :
         {"%s", "%n", "%s%s%s%s%n", "%99999999d", "%1$s", "%*d", "100%", "100%%", "%", "%c%f%g"}) {
        const std::string onHeap = hostile + std::string(40, '.');
        EXPECT_EQ(warned(onHeap.c_str()), onHeap);
        char onStack[64];
        std::strcpy(onStack, hostile);
        EXPECT_EQ(warned(onStack), hostile);
        static char inData[64] = "filled";
        std::strcpy(inData, hostile);
        EXPECT_EQ(warned(inData), hostile);
    }
    const std::string composed = "tag %d";
    EXPECT_EQ(warned(composed.c_str(), 5), "tag %d");
    const std::string large(100'000, '%');
    EXPECT_EQ(warned(large.c_str()), large);
}

TEST(ComposedText, OfAnErrorIsPrintedAsItStands) {
    const std::string composed = "file \"%s%n.tif\"";
    const CallResult result = run([&] { qvxErrMsgIdAndTxt("a:b", composed.c_str()); });
    EXPECT_EQ(result.error(), (Message{"a:b", "file \"%s%n.tif\""}));
}

}  // namespace
}  // namespace zephra
