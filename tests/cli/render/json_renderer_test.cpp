#include "render/json_renderer.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "made_values.h"

using namespace std::string_literals;

namespace veltrace::cli {
namespace {

using testing::IsEmpty;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// The rendering, which its renderer must accept.
Rendering rendered(const RenderOptions& options, const Make& make) {
    const zephra::CallResult result = called(make);
    const JsonRenderer renderer(options);
    Rendering rendering = renderer.render(result.output());
    EXPECT_TRUE(renderer.accepts(rendering));
    return rendering;
}

/// The JSON of a value that is in no list: the field "X" of one directory.
std::string jsonOf(const Make& make) {
    const Rendering rendering = rendered({}, structures({{{"X", make}}}));
    EXPECT_EQ(rendering.nonfinite + rendering.latin1 + rendering.omitted, "");
    const std::string& body = rendering.body;
    EXPECT_TRUE(body.starts_with(R"([{"X":)") && body.ends_with("}]")) << body;
    return body.substr(6, body.size() - 8);
}

RenderOptions omitting(std::size_t limit) {
    RenderOptions options;
    options.omitLargerThan = limit;
    return options;
}

TEST(JsonRenderer, NoOutputIsAnEmptyList) {
    const Rendering expected{"[]", "", "", "", {}, {}};
    EXPECT_EQ(rendered({}, nullptr), expected);
    EXPECT_EQ(rendered({}, numbers(0, 0, {})), expected);
}

TEST(JsonRenderer, ADirectoryIsAnObjectWithFieldsInTheirOrder) {
    const Rendering expected{
        R"([{"Zoom":2,"Aim":null},{"Zoom":null,"Aim":"x"}])", "", "", "", {}, {}};
    EXPECT_EQ(rendered({}, structures({{{"Zoom", number(2)}, {"Aim", nullptr}},
                                       {{"Zoom", nullptr}, {"Aim", characters("x")}}})),
              expected);
}

TEST(JsonRenderer, RowsAndColumnsAreFlatListsAndMatricesListsOfRows) {
    EXPECT_EQ(jsonOf(numbers(1, 3, {8, 8, 8})), "[8,8,8]");
    EXPECT_EQ(jsonOf(numbers(3, 1, {1, 2.5, -0.0})), "[1,2.5,-0.0]");
    EXPECT_EQ(jsonOf(numbers(1, 1, {0.008})), "0.008");
    EXPECT_EQ(jsonOf(numbers(2, 3, {1, 2, 3, 4, 5, 6})), "[[1,3,5],[2,4,6]]");
    EXPECT_EQ(jsonOf(logicals(2, 2, {0, 1, 0, 0})), "[[false,false],[true,false]]");
    EXPECT_EQ(jsonOf(nullptr), "null");
    EXPECT_EQ(jsonOf(numbers(0, 0, {})), "null");
    EXPECT_EQ(jsonOf(numbers(0, 3, {})), "null");
}

TEST(JsonRenderer, FurtherDimensionsCountAsColumns) {
    EXPECT_EQ(jsonOf([] {
                  const std::array<std::size_t, 3> size{2, 1, 2};
                  qvArray* const array =
                      qvCreateNumericArray(3, size.data(), qvClassDouble, qvReal);
                  static_cast<double*>(qvGetData(array))[3] = 7;
                  return array;
              }),
              "[[0,0],[0,7]]");
}

TEST(JsonRenderer, TextKeepsItsTrailingNuls) {
    EXPECT_EQ(jsonOf(characters("kiln\0\0"s)), R"("kiln\u0000\u0000")");
    EXPECT_EQ(jsonOf(characters("")), R"("")");
}

TEST(JsonRenderer, CellsAndNestedStructuresAreLists) {
    EXPECT_EQ(jsonOf(cells({characters("a"), nullptr, numbers(1, 2, {1, 2})})),
              R"(["a",null,[1,2]])");
    EXPECT_EQ(jsonOf(cells({cells({cells({})})})), "[[[]]]");
    EXPECT_EQ(jsonOf(structures({{{"Before", number(1)},
                                  {"Inner", structures({{{"X", number(2)}}})},
                                  {"After", cells({structures({{{"Y", number(3)}}})})}}})),
              R"([{"Before":1,"Inner":[{"X":2}],"After":[[{"Y":3}]]}])");
    EXPECT_EQ(jsonOf([] {
                  const std::size_t size = 2;
                  return qvCreateStructArray(1, &size, 0, nullptr);
              }),
              "[{},{}]");
}

TEST(JsonRenderer, NestingAsDeepAsMemoryAllowsIsWritten) {
    constexpr std::size_t kDepth = 200'000;
    std::string expected;
    for (std::size_t i = 0; i < kDepth; ++i) {
        expected += R"([{"Next":)";
    }
    expected += "null";
    for (std::size_t i = 0; i < kDepth; ++i) {
        expected += "}]";
    }
    EXPECT_EQ(rendered({}, nestedStructures(kDepth)).body, expected);
}

TEST(JsonRenderer, ListsNumbersThatJsonCannotRepresent) {
    const Make gps = structures(
        {{{"GPSAltitude", numbers(3, 1, {1, 2, std::nan("")})}, {"GPSSpeed", number(-kInfinity)}}});
    const Rendering rendering = rendered(
        {}, structures({{{"GPSInfo", nullptr}, {"Matrix", nullptr}},
                        {{"GPSInfo", gps}, {"Matrix", numbers(2, 2, {1, 2, 3, kInfinity})}}}));
    EXPECT_EQ(rendering.body, R"([{"GPSInfo":null,"Matrix":null},)"
                              R"({"GPSInfo":[{"GPSAltitude":[1,2,null],"GPSSpeed":null}],)"
                              R"("Matrix":[[1,3],[2,null]]}])");
    EXPECT_EQ(rendering.nonfinite, R"({"at":"/info/1/GPSInfo/0/GPSAltitude/2","is":"NaN"},)"
                                   R"({"at":"/info/1/GPSInfo/0/GPSSpeed","is":"-Infinity"},)"
                                   R"({"at":"/info/1/Matrix/1/1","is":"Infinity"})");
}

TEST(JsonRenderer, ListsTextsThatAreNotUtf8) {
    const Rendering rendering =
        rendered({}, structures({{{"Make", characters("caf\xe9")},
                                  {"Words", cells({characters("a"), characters("\xff\0"s)})},
                                  {"Model", characters("caf\u00e9")}}}));
    EXPECT_EQ(rendering.body,
              "[{\"Make\":\"caf\u00e9\",\"Words\":[\"a\",\"\u00ff\\u0000\"],"
              "\"Model\":\"caf\u00e9\"}]");
    EXPECT_EQ(rendering.latin1, R"("/info/0/Make","/info/0/Words/1")");
}

TEST(JsonRenderer, PlacesEscapeTheNamesOfFields) {
    const Rendering rendering =
        rendered({}, structures({{{"a/b~1\"", characters("\xff")}, {"\xe9", characters("\xfe")}}}));
    EXPECT_EQ(rendering.body, "[{\"a/b~1\\\"\":\"\u00ff\",\"\u00e9\":\"\u00fe\"}]");
    EXPECT_EQ(rendering.latin1, "\"/info/0/a~1b~01\\\"\",\"/info/0/\u00e9\"");
}

TEST(JsonRenderer, OmitsValuesBeyondTheUsersLimit) {
    const Rendering rendering = rendered(
        omitting(3), structures({{{"Row", numbers(1, 4, {1, 2, 3, 4})},
                                  {"Three", numbers(1, 3, {1, 2, 3})},
                                  {"Matrix", numbers(2, 3, {1, 2, 3, 4, 5, kInfinity})},
                                  {"Text", characters("caf\xe9")},
                                  {"Abc", characters("abc")},
                                  {"Cells", cells({nullptr, nullptr, nullptr, nullptr})}}}));
    EXPECT_EQ(rendering.body,
              R"([{"Row":null,"Three":[1,2,3],"Matrix":null,"Text":null,"Abc":"abc",)"
              R"("Cells":null}])");
    EXPECT_EQ(rendering.omitted,
              R"({"at":"/info/0/Row","size":[1,4]},{"at":"/info/0/Matrix","size":[2,3]},)"
              R"({"at":"/info/0/Text","size":[1,4]},{"at":"/info/0/Cells","size":[4,1]})");
    EXPECT_EQ(rendering.nonfinite + rendering.latin1, "");
}

TEST(JsonRenderer, NeverOmitsStructureArrays) {
    const Rendering rendering = rendered(
        omitting(0), structures({{{"A", structures({{{"X", nullptr}}, {{"X", nullptr}}})}}}));
    EXPECT_EQ(rendering.body, R"([{"A":[{"X":null},{"X":null}]}])");
    EXPECT_EQ(rendering.omitted, "");
}

Make photo() {
    const Make camera = structures({{{"FNumber", number(2.8)}, {"Flash", number(16)}},
                                    {{"FNumber", number(4)}, {"Flash", nullptr}}});
    return structures({{{"Make", characters("Kiln")}, {"Camera", camera}, {"Width", number(7)}},
                       {{"Make", nullptr}, {"Camera", nullptr}, {"Width", number(5)}}});
}

TEST(JsonRenderer, WritesSelectedFieldsInTheOrderOfTheModuleAndReportsThem) {
    struct Selection {
        std::vector<std::string> fields;
        std::string body;
        std::vector<std::uint32_t> seen;
    };
    const Selection selections[] = {
        {{"Width", "Height", "Make"},
         R"([{"Make":"Kiln","Width":7},{"Make":null,"Width":5}])",
         {0, 2}},
        {{"Camera.FNumber", "Make.FNumber"},
         R"([{"Camera":[{"FNumber":2.8},{"FNumber":4}]},{}])",
         {0}},
        {{"Camera.Flash", "Camera.Iris", "Camera"},
         R"([{"Camera":[{"FNumber":2.8,"Flash":16},{"FNumber":4,"Flash":null}]},{"Camera":null}])",
         {0, 2}},
    };
    for (const auto& [fields, body, seen] : selections) {
        const Rendering rendering = rendered(selecting(fields), photo());
        EXPECT_EQ(rendering.body, body);
        EXPECT_EQ(rendering.fieldsSeen, seen);
    }
    EXPECT_THAT(rendered({}, photo()).fieldsSeen, IsEmpty());
}

TEST(JsonRenderer, ASelectionGoesThroughCells) {
    const Rendering rendering = rendered(
        selecting({"Cells.X"}),
        structures({{{"Cells", cells({structures({{{"X", number(1)}, {"Y", nullptr}}})})}}}));
    EXPECT_EQ(rendering.body, R"([{"Cells":[[{"X":1}]]}])");
}

TEST(JsonRenderer, PlacesAreThoseOfTheBodyWhenFieldsAreOmitted) {
    const Rendering rendering = rendered(
        selecting({"B"}), structures({{{"A", characters("\xff")}, {"B", characters("\xfe")}}}));
    EXPECT_EQ(rendering.body, "[{\"B\":\"\u00fe\"}]");
    EXPECT_EQ(rendering.latin1, R"("/info/0/B")");
}

TEST(JsonRenderer, AllTextsOfARenderingShareItsLimit) {
    const zephra::CallResult result =
        called(structures({{{"X", numbers(1, 2, {1, std::nan("")})}, {"T", characters("\xff")}}}));
    // Of [{"X":[1,null],"T":"<U+00FF>"}], {"at":"/info/0/X/1","is":"NaN"} and "/info/0/T".
    constexpr std::size_t kSize = 25 + 31 + 11;
    RenderOptions options;
    options.maxOutput = kSize;
    const Rendering rendering = JsonRenderer(options).render(result.output());
    EXPECT_EQ(rendering.body.size(), 25U);
    EXPECT_EQ(rendering.nonfinite.size(), 31U);
    EXPECT_EQ(rendering.latin1.size(), 11U);
    options.maxOutput = kSize - 1;
    const JsonRenderer smaller(options);
    EXPECT_THROW((void)smaller.render(result.output()), OutputTooLarge);
    EXPECT_FALSE(smaller.accepts(rendering));
}

TEST(JsonRenderer, RejectsInvalidRenderings) {
    const JsonRenderer renderer(selecting({"Make", "Model"}));
    const Rendering good{"[]", "", "", "", {}, {0, 1}};
    EXPECT_TRUE(renderer.accepts(good));
    const auto refuses = [&](auto change) {
        Rendering bad = good;
        change(bad);
        return !renderer.accepts(bad);
    };
    EXPECT_TRUE(refuses([](Rendering& bad) { bad.body = ""; }));
    EXPECT_TRUE(refuses([](Rendering& bad) { bad.body = "[]}"; }));
    EXPECT_TRUE(refuses([](Rendering& bad) { bad.nonfinite = R"("/info/0")"; }));
    EXPECT_TRUE(refuses([](Rendering& bad) { bad.latin1 = "]"; }));
    EXPECT_TRUE(refuses([](Rendering& bad) { bad.cells = {""}; }));
    EXPECT_TRUE(refuses([](Rendering& bad) { bad.fieldsSeen = {1, 2}; }));
    EXPECT_TRUE(refuses([](Rendering& bad) { bad.fieldsSeen = {1, 0}; }));
    // Nothing is omitted without the option.
    const std::string omitted = R"({"at":"/info/0/Make","size":[1,9]})";
    EXPECT_TRUE(refuses([&](Rendering& bad) { bad.omitted = omitted; }));
    EXPECT_TRUE(JsonRenderer(omitting(8)).accepts({"[]", "", "", omitted, {}, {}}));
}

}  // namespace
}  // namespace veltrace::cli
