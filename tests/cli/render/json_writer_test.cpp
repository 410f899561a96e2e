#include "render/json_writer.h"

#include <gtest/gtest.h>
#include <string>

namespace veltrace::cli {
namespace {

TEST(JsonWriter, SetsBracketsCommasAndColons) {
    Allowance allowance(100);
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
    json.key("b\n");
    json.raw(R"([{"x":1}])");
    json.key("c");
    EXPECT_TRUE(json.text("d"));
    json.key("e");
    EXPECT_FALSE(json.text("\xff"));
    json.endObject();
    EXPECT_EQ(out.text(),
              "{\"a\":[2.5,18446744073709551615,true,false,null],"
              "\"b\\n\":[{\"x\":1}],\"c\":\"d\",\"e\":\"\u00ff\"}");
}

TEST(JsonWriter, NestsNoDeeperThanItsReadersTake) {
    Allowance allowance(2 * kDeepestJson);
    BoundedText out(allowance);
    JsonWriter json(out);
    for (std::size_t depth = 0; depth < kDeepestJson; ++depth) {
        json.startArray();
    }
    EXPECT_THROW(json.startArray(), OutputTooLarge);
    EXPECT_THROW(json.startObject(), OutputTooLarge);
}

}  // namespace
}  // namespace veltrace::cli
