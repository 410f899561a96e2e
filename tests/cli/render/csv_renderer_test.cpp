#include "render/csv_renderer.h"

#include <gmock/gmock.h>

#include "made_values.h"

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace veltrace::cli {
namespace {

Rendering rendered(const Make& make, const RenderOptions& options) {
    const zephra::CallResult result = called(make);
    return CsvRenderer(options).render(result.output());
}

std::vector<std::string> cellsOf(const Make& make, std::vector<std::string> fields) {
    return rendered(make, selecting(std::move(fields))).cells;
}

/// Two directories; the second has two cameras and no maker.
Make photograph() {
    return structures(
        {{{"Width", number(1)}, {"Make", characters("A\0"s)}, {"Camera", nullptr}},
         {{"Width", number(2)},
          {"Make", nullptr},
          {"Camera", structures({{{"FNumber", number(2.8)}}, {{"FNumber", number(4)}}})}}});
}

TEST(CsvRenderer, ReturnsTheNumberOfDirectoriesAndTheSelectedFieldsInOrder) {
    const auto make = structures({{{"Make", characters("A")}, {"Width", number(7)}}});
    EXPECT_THAT(cellsOf(make, {"Width", "Make"}), ElementsAre("1", "7", "A"));
    EXPECT_THAT(cellsOf(make, {"Make", "Make"}), ElementsAre("1", "A", "A"));
}

TEST(CsvRenderer, JoinsTheValuesOfAllDirectoriesThatHaveOne) {
    EXPECT_THAT(cellsOf(photograph(), {"Width", "Make", "Camera.FNumber"}),
                ElementsAre("2", "1;2", "A", "2.8;4"));
    EXPECT_THAT(cellsOf(structures({{{"Make", characters("\0"s)}},
                                    {{"Make", characters("A")}},
                                    {{"Make", characters("")}},
                                    {{"Make", characters("B")}}}),
                        {"Make"}),
                ElementsAre("4", "A;B"));
    // A nested directory is replaced by its size, a missing field is an empty cell.
    EXPECT_THAT(cellsOf(photograph(), {"Camera"}), ElementsAre("2", "[2 x 1 struct]"));
    EXPECT_THAT(cellsOf(photograph(), {"Lens", "Width.Depth", "Camera.Lens", "Width.", ""}),
                ElementsAre("2", "", "", "", "", ""));
    EXPECT_THAT(cellsOf(numbers(0, 0, {}), {"Width"}), ElementsAre("0", ""));
    EXPECT_THAT(cellsOf(nullptr, {"Width"}), ElementsAre("0", ""));
}

TEST(CsvRenderer, ReportsTheSelectedFieldsThatOccur) {
    EXPECT_THAT(rendered(photograph(), selecting({"Lens", "Camera.FNumber", "Camera"})).fieldsSeen,
                ElementsAre(1, 2));
}

TEST(CsvRenderer, WithoutASelectionShowsUsualFieldsAndReportsNone) {
    const Rendering rendering = rendered(
        structures({{{"Format", characters("tif")},
                     {"Width", number(7)},
                     {"Height", number(5)},
                     {"BitDepth", number(24)},
                     {"ColorType", characters("truecolor")},
                     {"Compression", characters("LZW")},
                     {"DateTime", characters("2020:01:02 03:04:05\0"s)},
                     {"Make", characters("Sample")},
                     {"Model", characters("Box 1")},
                     {"Software", characters("not shown")},
                     {"DigitalCamera", structures({{{"ExposureTime", number(0.008)},
                                                    {"FNumber", number(2.8)},
                                                    {"FocalLength", number(35)}}})},
                     {"GPSInfo", structures({{{"GPSLatitude", numbers(3, 1, {47, 22, 11.9})},
                                              {"GPSLongitude", numbers(3, 1, {8, 32, 0})}}})}}}),
        {});
    EXPECT_THAT(rendering.cells,
                ElementsAre("1", "tif", "7", "5", "24", "truecolor", "LZW", "2020:01:02 03:04:05",
                            "Sample", "Box 1", "0.008", "2.8", "35", "47 22 11.9", "8 32 0"));
    EXPECT_THAT(rendering.fieldsSeen, IsEmpty());
}

TEST(CsvRenderer, RejectsCellsThatAreTooLarge) {
    RenderOptions options = selecting({"Width"});
    options.maxOutput = 4;
    EXPECT_THAT(rendered(photograph(), options).cells, ElementsAre("2", "1;2"));
    --options.maxOutput;
    EXPECT_THROW(rendered(photograph(), options), OutputTooLarge);
}

TEST(CsvRenderer, TheLimitAppliesToAllCellsTogether) {
    RenderOptions options = selecting(std::vector<std::string>(40, "Text"));
    options.maxOutput = 100;
    EXPECT_THROW(rendered(structures({{{"Text", characters("abc")}}}), options), OutputTooLarge);
}

bool accepts(std::vector<std::string> cells, std::vector<std::uint32_t> fieldsSeen = {}) {
    Rendering rendering;
    rendering.cells = std::move(cells);
    rendering.fieldsSeen = std::move(fieldsSeen);
    RenderOptions options = selecting({"Width", "Make"});
    options.maxOutput = 100;
    return CsvRenderer(options).accepts(rendering);
}

TEST(CsvRenderer, AcceptsWhatItRenders) {
    const CsvRenderer renderer(selecting({"Camera.FNumber", "Make"}));
    const zephra::CallResult result = called(photograph());
    EXPECT_TRUE(renderer.accepts(renderer.render(result.output())));
    EXPECT_TRUE(accepts({"12", "7", "A"}, {0, 1}));
    EXPECT_TRUE(accepts({"1", "", "\u00e9\\n\"'=,"}));
}

TEST(CsvRenderer, RejectsAnythingButACountAndATextForEachField) {
    EXPECT_FALSE(accepts({}));
    EXPECT_FALSE(accepts({"1", "7"}));
    EXPECT_FALSE(accepts({"1", "7", "A", "B"}));
    EXPECT_FALSE(accepts({"", "7", "A"}));
    EXPECT_FALSE(accepts({"-1", "7", "A"}));
    EXPECT_TRUE(accepts({"1", std::string(49, 'x'), std::string(50, 'x')}));
    EXPECT_FALSE(accepts({"1", std::string(50, 'x'), std::string(50, 'x')}));
    EXPECT_FALSE(accepts({"1", "7", "A"}, {2}));
    EXPECT_FALSE(accepts({"1", "7", "A"}, {1, 0}));
}

TEST(CsvRenderer, RejectsTextsThatAreNotPrintable) {
    for (const std::string& text : {"a\nb"s, "\0"s, "\x1b"s, "\x7f"s, "\u0085"s, "\u2028"s,
                                    "\u202e"s, "\xff"s, "\xed\xa0\x80"s}) {
        EXPECT_FALSE(accepts({"1", "7", text})) << testing::PrintToString(text);
        EXPECT_FALSE(accepts({"1", text, ""})) << testing::PrintToString(text);
    }
}

TEST(CsvRenderer, RejectsTextsOfOtherFormats) {
    const CsvRenderer renderer(selecting({"Width"}));
    for (const auto text :
         {&Rendering::body, &Rendering::nonfinite, &Rendering::latin1, &Rendering::omitted}) {
        Rendering rendering;
        rendering.cells = {"1", "7"};
        EXPECT_TRUE(renderer.accepts(rendering));
        rendering.*text = "x";
        EXPECT_FALSE(renderer.accepts(rendering));
    }
}

}  // namespace
}  // namespace veltrace::cli
