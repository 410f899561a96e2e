#include "render/csv_renderer.h"

#include <gmock/gmock.h>

#include "made_values.h"

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace veltrace::cli {
namespace {

RenderOptions selecting(std::vector<std::string> fields) {
    RenderOptions options;
    options.fields = std::move(fields);
    return options;
}

Rendering rendered(const std::function<qvArray*()>& make, const RenderOptions& options) {
    const zephra::CallResult result = called(make);
    return CsvRenderer(options).render(result.output());
}

std::string bodyOf(const std::function<qvArray*()>& make, std::vector<std::string> fields) {
    return rendered(make, selecting(std::move(fields))).body;
}

/// Two directories; the second has two cameras and no maker.
qvArray* photograph() {
    return structures(
        {{{"Width", qvCreateDoubleScalar(1)}, {"Make", characters("A\0"s)}, {"Camera", nullptr}},
         {{"Width", qvCreateDoubleScalar(2)},
          {"Make", nullptr},
          {"Camera", structures({{{"FNumber", qvCreateDoubleScalar(2.8)}},
                                 {{"FNumber", qvCreateDoubleScalar(4)}}})}}});
}

TEST(CsvRenderer, GivesTheNumberOfDirectoriesAndTheSelectedFieldsInTheirOrder) {
    const auto make = [] {
        return structures({{{"Make", characters("A")}, {"Width", qvCreateDoubleScalar(7)}}});
    };
    EXPECT_EQ(bodyOf(make, {"Width", "Make"}), R"(["1","7","A"])");
    EXPECT_EQ(bodyOf(make, {"Make", "Make"}), R"(["1","A","A"])");
}

TEST(CsvRenderer, JoinsTheValuesOfAllDirectoriesThatHaveOne) {
    EXPECT_EQ(bodyOf(photograph, {"Width", "Make", "Camera.FNumber"}),
              R"(["2","1;2","A","2.8;4"])");
    EXPECT_EQ(bodyOf(
                  [] {
                      return structures({{{"Make", characters("\0"s)}},
                                         {{"Make", characters("A")}},
                                         {{"Make", characters("")}},
                                         {{"Make", characters("B")}}});
                  },
                  {"Make"}),
              R"(["4","A;B"])");
}

TEST(CsvRenderer, ANestedDirectoryItselfIsNamedByItsSize) {
    EXPECT_EQ(bodyOf(photograph, {"Camera"}), R"(["2","[2 x 1 struct]"])");
}

TEST(CsvRenderer, AFieldThatIsNotThereIsAnEmptyCell) {
    EXPECT_EQ(bodyOf(photograph, {"Lens", "Width.Depth", "Camera.Lens", "Width.", ""}),
              R"(["2","","","","",""])");
}

TEST(CsvRenderer, AnOutputWithoutDirectoriesHasEmptyCells) {
    EXPECT_EQ(bodyOf([] { return numbers(0, 0, {}); }, {"Width"}), R"(["0",""])");
    EXPECT_EQ(bodyOf([]() -> qvArray* { return nullptr; }, {"Width"}), R"(["0",""])");
}

TEST(CsvRenderer, TellsWhichSelectedFieldsOccur) {
    EXPECT_THAT(rendered(photograph, selecting({"Lens", "Camera.FNumber", "Camera"})).fieldsSeen,
                ElementsAre(1, 2));
}

TEST(CsvRenderer, WithoutASelectionShowsUsualFieldsAndCountsNoneAsSeen) {
    const Rendering rendering = rendered(
        [] {
            return structures(
                {{{"Format", characters("tif")},
                  {"Width", qvCreateDoubleScalar(7)},
                  {"Height", qvCreateDoubleScalar(5)},
                  {"BitDepth", qvCreateDoubleScalar(24)},
                  {"ColorType", characters("truecolor")},
                  {"Compression", characters("LZW")},
                  {"DateTime", characters("2020:01:02 03:04:05\0"s)},
                  {"Make", characters("Sample")},
                  {"Model", characters("Box 1")},
                  {"Software", characters("not shown")},
                  {"DigitalCamera", structures({{{"ExposureTime", qvCreateDoubleScalar(0.008)},
                                                 {"FNumber", qvCreateDoubleScalar(2.8)},
                                                 {"FocalLength", qvCreateDoubleScalar(35)}}})},
                  {"GPSInfo", structures({{{"GPSLatitude", numbers(3, 1, {47, 22, 11.9})},
                                           {"GPSLongitude", numbers(3, 1, {8, 32, 0})}}})}}});
        },
        {});
    EXPECT_EQ(rendering.body,
              R"(["1","tif","7","5","24","truecolor","LZW","2020:01:02 03:04:05","Sample",)"
              R"("Box 1","0.008","2.8","35","47 22 11.9","8 32 0"])");
    EXPECT_THAT(rendering.fieldsSeen, IsEmpty());
}

TEST(CsvRenderer, CellsThatGrowTooLargeAreRefused) {
    RenderOptions options = selecting({"Width"});
    options.largestOutput = R"(["2","1;2"])"s.size();
    EXPECT_EQ(rendered(photograph, options).body, R"(["2","1;2"])");
    --options.largestOutput;
    EXPECT_THROW(rendered(photograph, options), OutputTooLarge);
}

TEST(CsvRenderer, TheLimitHoldsForAllCellsTogether) {
    RenderOptions options = selecting(std::vector<std::string>(40, "Text"));
    options.largestOutput = 100;
    EXPECT_THROW(rendered(
                     [] {
                         return structures({{{"Text", characters("abc")}}});
                     },
                     options),
                 OutputTooLarge);
}

bool accepts(const std::string& body, std::vector<std::uint32_t> fieldsSeen = {}) {
    Rendering rendering;
    rendering.body = body;
    rendering.fieldsSeen = std::move(fieldsSeen);
    return CsvRenderer(selecting({"Width", "Make"})).accepts(rendering);
}

TEST(CsvRenderer, AcceptsWhatItRenders) {
    const CsvRenderer renderer(selecting({"Camera.FNumber", "Make"}));
    const zephra::CallResult result = called(photograph);
    EXPECT_TRUE(renderer.accepts(renderer.render(result.output())));
    EXPECT_TRUE(accepts(R"(["12","7","A"])", {0, 1}));
}

TEST(CsvRenderer, RefusesAnythingButACountAndATextForEachField) {
    EXPECT_FALSE(accepts(""));
    EXPECT_FALSE(accepts(R"(["1","7"])"));
    EXPECT_FALSE(accepts(R"(["1","7","A","B"])"));
    EXPECT_FALSE(accepts(R"(["","7","A"])"));
    EXPECT_FALSE(accepts(R"(["-1","7","A"])"));
    EXPECT_FALSE(accepts(R"(["1","7","\n"])"));
}

TEST(CsvRenderer, RefusesIndicesOfFieldsThatAreNotSelected) {
    EXPECT_FALSE(accepts(R"(["1","7","A"])", {2}));
    EXPECT_FALSE(accepts(R"(["1","7","A"])", {1, 0}));
}

TEST(CsvRenderer, RefusesWhatOnlyOtherFormatsHave) {
    const CsvRenderer renderer(selecting({"Width"}));
    for (const auto list : {&Rendering::nonfinite, &Rendering::latin1, &Rendering::omitted}) {
        Rendering rendering;
        rendering.body = R"(["1","7"])";
        EXPECT_TRUE(renderer.accepts(rendering));
        rendering.*list = "x";
        EXPECT_FALSE(renderer.accepts(rendering));
    }
}

}  // namespace
}  // namespace veltrace::cli
