#include "render/json_value.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <sstream>
#include <streambuf>
#include <string>

#include "made_values.h"

using namespace std::string_literals;

namespace veltrace::cli {
namespace {

std::string jsonOf(const std::function<qvArray*()>& make) {
    const zephra::CallResult result = called(make);
    std::ostringstream out;
    JsonStream stream(out);
    JsonWriter json(stream);
    writeJson(json, result.output());
    return out.str();
}

std::string jsonOf(double number) {
    return jsonOf([=] { return qvCreateDoubleScalar(number); });
}

std::string jsonOf(std::string_view text) {
    return jsonOf([=] { return characters(text); });
}

TEST(JsonValue, WholeNumbersHaveNoFractionAndNoExponent) {
    EXPECT_EQ(jsonOf(0.0), "0");
    EXPECT_EQ(jsonOf(-1.0), "-1");
    EXPECT_EQ(jsonOf(4294967295.0), "4294967295");
    EXPECT_EQ(jsonOf(1e15), "1000000000000000");
    EXPECT_EQ(jsonOf(9007199254740991.0), "9007199254740991");
    EXPECT_EQ(jsonOf(-9007199254740991.0), "-9007199254740991");
}

TEST(JsonValue, OtherNumbersAreTheShortestThatReadBack) {
    EXPECT_EQ(jsonOf(0.1), "0.1");
    EXPECT_EQ(jsonOf(1.0 / 3.0), "0.3333333333333333");
    EXPECT_EQ(jsonOf(0.008), "0.008");
    EXPECT_EQ(jsonOf(1e-5), "1e-05");
    EXPECT_EQ(jsonOf(1e300), "1e+300");
    EXPECT_EQ(jsonOf(std::numeric_limits<double>::denorm_min()), "5e-324");
    EXPECT_EQ(jsonOf(-std::numeric_limits<double>::max()), "-1.7976931348623157e+308");
}

TEST(JsonValue, NumbersThatJsonLacksAreNull) {
    EXPECT_EQ(jsonOf(std::nan("")), "null");
    EXPECT_EQ(jsonOf(std::numeric_limits<double>::infinity()), "null");
    EXPECT_EQ(jsonOf(-std::numeric_limits<double>::infinity()), "null");
}

TEST(JsonValue, RowsAndColumnsAreFlatLists) {
    EXPECT_EQ(jsonOf([] { return numbers(1, 3, {8, 8, 8}); }), "[8,8,8]");
    EXPECT_EQ(jsonOf([] { return numbers(3, 1, {1, 2.5, -3}); }), "[1,2.5,-3]");
}

TEST(JsonValue, AMatrixIsAListOfItsRows) {
    EXPECT_EQ(jsonOf([] { return numbers(2, 3, {1, 2, 3, 4, 5, 6}); }), "[[1,3,5],[2,4,6]]");
}

TEST(JsonValue, FurtherDimensionsCountAsColumns) {
    EXPECT_EQ(jsonOf([] {
                  const std::array<std::size_t, 3> size{2, 1, 2};
                  qvArray* const array =
                      qvCreateNumericArray(3, size.data(), qvClassDouble, qvReal);
                  static_cast<double*>(qvGetData(array))[3] = 7;
                  return array;
              }),
              "[[0,0],[0,7]]");
}

TEST(JsonValue, NothingAndEmptyNumbersAreNull) {
    EXPECT_EQ(jsonOf([]() -> qvArray* { return nullptr; }), "null");
    EXPECT_EQ(jsonOf([] { return numbers(0, 0, {}); }), "null");
    EXPECT_EQ(jsonOf([] { return numbers(0, 3, {}); }), "null");
}

TEST(JsonValue, LogicalsAreBooleans) {
    EXPECT_EQ(jsonOf([] {
                  const std::array<std::size_t, 2> size{1, 2};
                  return qvCreateNumericArray(2, size.data(), qvClassLogical, qvReal);
              }),
              "[false,false]");
}

TEST(JsonValue, TextKeepsItsBytesNulsIncluded) {
    EXPECT_EQ(jsonOf("kiln\0"s), R"("kiln\u0000")");
    EXPECT_EQ(jsonOf("say \"hi\" \\ \n"), R"("say \"hi\" \\ \n")");
    EXPECT_EQ(jsonOf(""), R"("")");
    EXPECT_EQ(jsonOf("\u65e5\u672c"), "\"\u65e5\u672c\"");
}

TEST(JsonValue, InvalidUtf8BecomesCharactersOfTheSameCode) {
    EXPECT_EQ(jsonOf("caf\xe9"), "\"caf\u00e9\"");
}

TEST(JsonValue, NoControlCharacterLeavesAsItIs) {
    EXPECT_EQ(jsonOf("\x1b[31m"), R"("\u001B[31m")");
    EXPECT_EQ(jsonOf("\x7f"), R"("\u007f")");
    EXPECT_EQ(jsonOf("\xc2\x80\xc2\x9f\xc2\xa0"), "\"\\u0080\\u009f\u00a0\"");
    EXPECT_EQ(jsonOf("\x9b"), R"("\u009b")");
}

TEST(JsonValue, CellsAreLists) {
    EXPECT_EQ(jsonOf([] {
                  return cells({characters("a"), nullptr, numbers(1, 2, {1, 2})});
              }),
              R"(["a",null,[1,2]])");
    EXPECT_EQ(jsonOf([] { return cells({}); }), "[]");
    EXPECT_EQ(jsonOf([] { return cells({cells({cells({})})}); }), "[[[]]]");
}

TEST(JsonValue, AStructureArrayIsAListOfObjectsWithFieldsInTheirOrder) {
    EXPECT_EQ(jsonOf([] {
                  return structures({{{"Zoom", qvCreateDoubleScalar(2)}, {"Aim", nullptr}},
                                     {{"Zoom", nullptr}, {"Aim", characters("x")}}});
              }),
              R"([{"Zoom":2,"Aim":null},{"Zoom":null,"Aim":"x"}])");
}

TEST(JsonValue, AStructureWithoutFieldsKeepsItsElements) {
    EXPECT_EQ(jsonOf([] {
                  const std::size_t size = 2;
                  return qvCreateStructArray(1, &size, 0, nullptr);
              }),
              "[{},{}]");
}

TEST(JsonValue, NestedStructuresAreListsOfObjects) {
    EXPECT_EQ(jsonOf([] {
                  return structures(
                      {{{"Before", qvCreateDoubleScalar(1)},
                        {"Inner", structures({{{"X", qvCreateDoubleScalar(2)}}})},
                        {"After", cells({structures({{{"Y", qvCreateDoubleScalar(3)}}})})}}});
              }),
              R"([{"Before":1,"Inner":[{"X":2}],"After":[[{"Y":3}]]}])");
}

TEST(JsonValue, NestingIsLimitedByMemoryOnly) {
    constexpr std::size_t kDepth = 200'000;
    std::string expected;
    for (std::size_t i = 0; i < kDepth; ++i) {
        expected += R"([{"Next":)";
    }
    expected += "null";
    for (std::size_t i = 0; i < kDepth; ++i) {
        expected += "}]";
    }
    EXPECT_EQ(jsonOf([] { return nestedStructures(kDepth); }), expected);
}

/// Takes a few bytes and no more.
class FullBuffer : public std::streambuf {
public:
    explicit FullBuffer(int room) : room_(room) {}

protected:
    int_type overflow(int_type c) override { return room_-- > 0 ? c : traits_type::eof(); }

private:
    int room_;
};

TEST(JsonStream, AFailedWriteSetsBadbitAndDropsTheRest) {
    FullBuffer buffer(3);
    std::ostream out(&buffer);
    JsonStream stream(out);
    for (const char c : {'1', '2', '3'}) {
        stream.Put(c);
    }
    EXPECT_TRUE(out.good());
    stream.Put('4');
    EXPECT_TRUE(out.bad());
}

}  // namespace
}  // namespace veltrace::cli
