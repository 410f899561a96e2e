#include "render/json_writer.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace veltrace::cli {
namespace {

TEST(JsonWriter, WritesBracketsCommasAndColons) {
    Allowance allowance(200);
    BoundedText out(allowance);
    JsonWriter json(out);
    json.startObject();
    json.key("a");
    json.startArray();
    json.number(2.5);
    json.number(std::uint64_t{18446744073709551615U});
    json.boolean(true);
    json.boolean(false);
    json.null();
    json.endArray();
    json.key("n");
    json.numbers(std::vector<double>{1, -2.5});
    json.key("o");
    json.numbers({});
    json.key("b\n");
    json.raw(R"([{"x":1}])");
    json.key("c");
    EXPECT_TRUE(json.text("d"));
    json.key("e");
    EXPECT_FALSE(json.text("\xff"));
    json.endObject();
    EXPECT_EQ(out.text(),
              "{\"a\":[2.5,18446744073709551615,true,false,null],\"n\":[1,-2.5],\"o\":[],"
              "\"b\\n\":[{\"x\":1}],\"c\":\"d\",\"e\":\"\u00ff\"}");
}

TEST(JsonWriter, NestsNoDeeperThanItsCheckAccepts) {
    Allowance allowance(2 * kMaxJsonDepth);
    BoundedText out(allowance);
    JsonWriter json(out);
    for (std::size_t depth = 0; depth < kMaxJsonDepth; ++depth) {
        json.startArray();
    }
    EXPECT_THROW(json.startArray(), OutputTooLarge);
    EXPECT_THROW(json.startObject(), OutputTooLarge);
}

TEST(JsonWriter, AListOfNumbersNestsAsWell) {
    Allowance allowance(2 * kMaxJsonDepth);
    BoundedText out(allowance);
    JsonWriter json(out);
    for (std::size_t depth = 1; depth < kMaxJsonDepth; ++depth) {
        json.startArray();
    }
    json.numbers(std::vector<double>{1});
    json.startArray();
    EXPECT_THROW(json.numbers(std::vector<double>{1}), OutputTooLarge);
}

}  // namespace
}  // namespace veltrace::cli
