// ASCII values.
#include "support/file_test.h"

namespace veltrace::test {

namespace {

using namespace std::string_view_literals;

TEST(Text, OfAKnownTagKeepsEveryCharacter) {
    expectShown({
        {Dir().rawAscii(305, "AB\0"sv), "Software", "'AB\\0'"},
        {Dir().rawAscii(305, "one\0two\0\0"sv), "Software", "'one\\0two\\0\\0'"},
        {Dir().rawAscii(305, "kiln"), "Software", "'kiln'"},
        {Dir().rawAscii(305, "\0"sv), "Software", "'\\0'"},
        {Dir().rawAscii(305, ""), "Software", "none"},
        {Dir().rawAscii(305, "\xE9\x80\xFF"), "Software", "'\\xE9\\x80\\xFF'"},
    });
}

TEST(Text, OfAnUnknownTagEndsAtItsFirstNul) {
    const std::pair<std::string_view, std::string_view> texts[] = {
        {"AB\0"sv, "'AB'"}, {"\0AB"sv, "''"}, {"kiln"sv, "'kiln'"}, {"\xE9\xFF", "'\\xE9\\xFF'"}};
    for (const auto& [stored, expected] : texts) {
        const ModuleRun run = quietRun(tiffOf(Dir().rawAscii(65000, stored)));
        EXPECT_EQ(shown(run.value({"UnknownTags", "Value"})), expected);
    }
}

TEST(Text, OfGpsAndInteroperabilityTagsKeepsItsTerminatingNul) {
    const ModuleRun run(
        tiffOf(Dir().nest(34853, Dir().ascii(1, "N")).nest(40965, Dir().ascii(1, "R98"))));
    EXPECT_EQ(run.text({"GPSInfo", "GPSLatitudeRef"}), "N\0"sv);
    EXPECT_EQ(run.text({"InteroperabilityIFD", "InteroperabilityIndex"}), "R98\0"sv);
}

}  // namespace

}  // namespace veltrace::test
