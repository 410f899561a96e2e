#include "render/text_renderer.h"

#include <gmock/gmock.h>

#include "made_values.h"

using namespace std::string_literals;
using testing::IsEmpty;

namespace veltrace::cli {
namespace {

Rendering rendered(const Make& make, const RenderOptions& options = {}) {
    const zephra::CallResult result = called(make);
    return TextRenderer(options).render(result.output());
}

std::string textOf(const Make& make, const RenderOptions& options = {}) {
    return rendered(make, options).body;
}

RenderOptions coloured() {
    RenderOptions options;
    options.colour = true;
    return options;
}

/// Two directories; only the second has a camera.
Make photograph() {
    return structures(
        {{{"Width", number(1)}, {"Make", characters("A")}, {"Camera", nullptr}},
         {{"Width", number(2)},
          {"Make", nullptr},
          {"Camera", structures({{{"FNumber", number(2.8)}, {"Flash", number(16)}}})}}});
}

TEST(TextRenderer, AlignsTheValuesOfADirectory) {
    EXPECT_EQ(textOf(structures({{{"Width", number(7)},
                                  {"Compression", characters("LZW")},
                                  {"BitDepth", number(24)}}})),
              "  Directory\n"
              "    Width        7\n"
              "    Compression  LZW\n"
              "    BitDepth     24\n");
}

TEST(TextRenderer, OmitsEmptyFieldsAndIgnoresThemInTheAlignment) {
    EXPECT_EQ(
        textOf(structures(
            {{{"AVeryLongName", nullptr}, {"Blank", characters("\0"s)}, {"Width", number(7)}}})),
        "  Directory\n"
        "    Width  7\n");
}

TEST(TextRenderer, NumbersSeveralDirectoriesAndIndentsNestedOnesBelowTheLinesOfTheirParent) {
    EXPECT_EQ(textOf(structures(
                  {{{"DigitalCamera", structures({{{"FNumber", number(2.8)}}})},
                    {"UnknownTags", structures({{{"ID", number(65000)}}, {{"ID", number(65001)}}})},
                    {"Width", number(7)}},
                   {{"Width", number(8)}}})),
              "  Directory 1 of 2\n"
              "    Width  7\n"
              "    DigitalCamera\n"
              "      FNumber  2.8\n"
              "    UnknownTags 1 of 2\n"
              "      ID  65000\n"
              "    UnknownTags 2 of 2\n"
              "      ID  65001\n"
              "  Directory 2 of 2\n"
              "    Width  8\n");
}

TEST(TextRenderer, ShowsUnits) {
    EXPECT_EQ(textOf(structures({{{"XResolution", number(72)},
                                  {"ResolutionUnit", characters("Inch")},
                                  {"ExposureTime", number(0.008)}}})),
              "  Directory\n"
              "    XResolution     72 per inch\n"
              "    ResolutionUnit  Inch\n"
              "    ExposureTime    0.008 s (1/125 s)\n");
}

TEST(TextRenderer, ShortensLongArrays) {
    RenderOptions options;
    options.maxValues = 2;
    EXPECT_EQ(textOf(structures({{{"Offsets", numbers(4, 1, {5, 6, 7, 8})}}}), options),
              "  Directory\n"
              "    Offsets  5, 6, ... [4 x 1]\n");
}

TEST(TextRenderer, EscapesNamesAndValues) {
    EXPECT_EQ(textOf(structures({{{"A\nB", characters("\x1b[2J\x9b")},
                                  {"\x1b", structures({{{"X", nullptr}}})}}})),
              "  Directory\n"
              "    A\\nB  \\x1b[2J\\x9b\n"
              "    \\x1b\n");
}

TEST(TextRenderer, AnOutputWithoutDirectoriesHasNoText) {
    EXPECT_EQ(rendered(numbers(0, 0, {})), Rendering());
    EXPECT_EQ(rendered(nullptr), Rendering());
}

TEST(TextRenderer, NestingIsLimitedByTheSizeOfTheTextOnly) {
    const std::string indent(32, ' ');
    EXPECT_THAT(textOf(nestedStructures(18)),
                testing::EndsWith("\n" + indent + "Next\n" +      //
                                  indent + "Next (depth 17)\n" +  //
                                  indent + "Next (depth 18)\n"));
    EXPECT_THAT(textOf(nestedStructures(200'000)), testing::EndsWith("Next (depth 200000)\n"));
}

TEST(TextRenderer, RejectsATextThatIsTooLarge) {
    const auto make = structures({{{"Width", number(7)}}});
    RenderOptions options;
    options.maxOutput = "  Directory\n    Width  7\n"s.size();
    EXPECT_EQ(textOf(make, options), "  Directory\n    Width  7\n");
    --options.maxOutput;
    EXPECT_THROW(textOf(make, options), OutputTooLarge);
}

TEST(TextRenderer, ColourMarksHeadingsNamesAndSizes) {
    RenderOptions options = coloured();
    options.maxValues = 1;
    EXPECT_EQ(textOf(structures({{{"Width", number(7)},
                                  {"Bits", numbers(1, 2, {8, 9})},
                                  {"Camera", structures({{{"X", nullptr}}})}}}),
                     options),
              "  \x1b[1mDirectory\x1b[0m\n"
              "    \x1b[36mWidth\x1b[0m  7\n"
              "    \x1b[36mBits\x1b[0m   8, ... \x1b[2m[1 x 2]\x1b[0m\n"
              "    \x1b[1mCamera\x1b[0m\n");
}

TEST(TextRenderer, SelectedFieldsAreShownWithTheirHeadingsAndReported) {
    struct Selection {
        std::vector<std::string> fields;
        std::string body;
        std::vector<std::uint32_t> seen;
    };
    const Selection selections[] = {
        {{"Width"}, "  Directory 1 of 2\n    Width  1\n  Directory 2 of 2\n    Width  2\n", {0}},
        {{"Lens", "Make"}, "  Directory 1 of 2\n    Make  A\n", {1}},
        {{"Camera.FNumber"}, "  Directory 2 of 2\n    Camera\n      FNumber  2.8\n", {0}},
        {{"Camera", "Camera.Flash"},
         "  Directory 2 of 2\n    Camera\n      FNumber  2.8\n      Flash    16\n",
         {0, 1}},
        {{"Lens", "Width.Depth", "Camera.Lens"}, "  none of the selected fields\n", {}},
    };
    for (const auto& [fields, body, seen] : selections) {
        const Rendering rendering = rendered(photograph(), selecting(fields));
        EXPECT_EQ(rendering.body, body);
        EXPECT_EQ(rendering.fieldsSeen, seen);
    }
    EXPECT_THAT(rendered(photograph()).fieldsSeen, IsEmpty());
}

bool accepts(const std::string& body, const RenderOptions& options = {}) {
    Rendering rendering;
    rendering.body = body;
    return TextRenderer(options).accepts(rendering);
}

TEST(TextRenderer, AcceptsWhatItRenders) {
    RenderOptions options = coloured();
    options.fields = {"Camera", "Width"};
    options.maxValues = 0;
    const TextRenderer renderer(options);
    const zephra::CallResult result = called(photograph());
    EXPECT_TRUE(renderer.accepts(renderer.render(result.output())));
    EXPECT_TRUE(accepts(""));
    EXPECT_TRUE(accepts("  Stra\u00dfe \\x1b\n    x\n"));
}

TEST(TextRenderer, RejectsIncompleteAndUnindentedLinesControlsAndInvalidUtf8) {
    EXPECT_FALSE(accepts("  Directory"));
    EXPECT_FALSE(accepts("other.tif\n"));
    EXPECT_FALSE(accepts("  Directory\n\n"));
    EXPECT_FALSE(accepts("  Directory\nother.tif\n"));
    EXPECT_FALSE(accepts(" Directory\n"));
    EXPECT_FALSE(accepts(" \n  Directory\n"));
    for (const char* const line : {"  a\rb\n", "  a\tb\n", "  \x07\n", "  \x7f\n", "  \u009b\n",
                                   "  \u2028\n", "  \u202e\n", "  \u2066\n", "  caf\xe9\n"}) {
        EXPECT_FALSE(accepts(line)) << testing::PrintToString(line);
        EXPECT_FALSE(accepts(line, coloured())) << testing::PrintToString(line);
    }
    EXPECT_FALSE(accepts("  \0\n"s));
}

TEST(TextRenderer, AcceptsItsOwnMarksWithColourOnly) {
    EXPECT_TRUE(accepts("  \x1b[1ma\x1b[0m \x1b[36mb\x1b[0m \x1b[2mc\x1b[0m\n", coloured()));
    EXPECT_FALSE(accepts("  \x1b[1ma\x1b[0m\n"));
    for (const char* const line : {"  \x1b\n", "  \x1b[\n", "  \x1b[2J\x1b[0m\n",
                                   "  \x1b[8mhidden\x1b[0m\n", "  \x1b]0;title\x1b[0m\n"}) {
        EXPECT_FALSE(accepts(line, coloured())) << testing::PrintToString(line);
    }
    // A mark ends on its line.
    EXPECT_FALSE(accepts("  \x1b[1mbold\n", coloured()));
    EXPECT_FALSE(accepts("  \x1b[1mbold\n  x\x1b[0m\n", coloured()));
}

TEST(TextRenderer, RejectsTextsOfOtherFormats) {
    const TextRenderer renderer{RenderOptions()};
    for (const auto list : {&Rendering::nonfinite, &Rendering::latin1, &Rendering::omitted}) {
        Rendering rendering;
        EXPECT_TRUE(renderer.accepts(rendering));
        rendering.*list = "x";
        EXPECT_FALSE(renderer.accepts(rendering));
    }
    Rendering cells;
    cells.cells = {""};
    EXPECT_FALSE(renderer.accepts(cells));
}

TEST(TextRenderer, RejectsIndicesOfFieldsThatAreNotSelected) {
    const TextRenderer renderer(selecting({"Width", "Make"}));
    const auto accepts = [&](std::vector<std::uint32_t> seen) {
        Rendering rendering;
        rendering.fieldsSeen = std::move(seen);
        return renderer.accepts(rendering);
    };
    EXPECT_TRUE(accepts({0, 1}));
    EXPECT_FALSE(accepts({2}));
    EXPECT_FALSE(accepts({1, 0}));
}

}  // namespace
}  // namespace veltrace::cli
