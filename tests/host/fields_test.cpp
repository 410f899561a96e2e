// Fields, stored and found by name.
#include <cstddef>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <string_view>
#include <vector>

#include "run.h"

namespace zephra {
namespace {

using Names = std::vector<const char*>;

/// The number of the field `name` of an element whose fields were set to 1, 2, ... in `order`.
double lastNumber(const Names& order, std::string_view name) {
    double number = 0;
    for (std::size_t i = 0; i < order.size(); ++i) {
        number = order[i] == name ? static_cast<double>(i + 1) : number;
    }
    return number;
}

/// Sets the fields of each element in its own order, each to a new number.
CallResult setFields(const Names& names, const std::vector<Names>& orders) {
    return run([&](qvArray*& output) {
        output = makeStruct({orders.size()}, names);
        for (std::size_t element = 0; element < orders.size(); ++element) {
            for (std::size_t i = 0; i < orders[element].size(); ++i) {
                qvSetField(output, element, orders[element][i],
                           qvCreateDoubleScalar(static_cast<double>(i + 1)));
            }
        }
    });
}

TEST(Fields, AreStoredInAnyOrder) {
    const Names names{"a", "b", "c", "d"};
    const std::vector<Names> orders{{"a", "b", "c", "d"}, {"a", "b", "c", "d"},
                                    {"d", "c", "b", "a"}, {"c", "a", "d", "b"},
                                    {"b", "d"},           {"a", "c"},
                                    {"a", "a", "b", "a"}, {"d"},
                                    {"d", "x", "a"},      {"a", "x", "b", "", "c", "dd"}};
    const CallResult result = setFields(names, orders);
    for (std::size_t element = 0; element < orders.size(); ++element) {
        for (std::size_t i = 0; i < names.size(); ++i) {
            const Value value = result.output().field(element, i);
            const double expected = lastNumber(orders[element], names[i]);
            ASSERT_EQ(static_cast<bool>(value), expected != 0) << element << names[i];
            EXPECT_EQ(value ? value.numbers().front() : 0, expected) << element << names[i];
        }
    }
    EXPECT_EQ(result.leftovers(), (Leftovers{.arrays = 4})) << "four names are unknown";
}

TEST(Fields, WithOneNameStayEmptyButTheFirst) {
    const std::vector<Names> orders{{"twin", "twin", "a", "twin", "b", "b"},
                                    {"a", "twin", "b"},
                                    {"b", "b", "twin"},
                                    {"twin", "twin", "twin"}};
    const CallResult result = setFields({"twin", "twin", "a", "twin", "b", "b"}, orders);
    EXPECT_EQ(result.output().fieldIndex("twin"), 0);
    EXPECT_EQ(result.output().fieldIndex("b"), 4);
    EXPECT_EQ(result.output().fieldName(5), "b");
    for (std::size_t element = 0; element < orders.size(); ++element) {
        const Value output = result.output();
        EXPECT_EQ(output.field(element, 0).numbers().front(), lastNumber(orders[element], "twin"));
        EXPECT_EQ(static_cast<bool>(output.field(element, 4)), element < 3);
        for (const std::size_t later : {1U, 3U, 5U}) {
            EXPECT_FALSE(output.field(element, later)) << element;
        }
    }
    EXPECT_EQ(result.leftovers(), Leftovers{});
}

TEST(Fields, AreFoundOnlyByTheirWholeNamesInTheirOwnCase) {
    const Names others{"", "W", "Widt", "width", "Width ", "Wodth", "WidthUni", "Height"};
    const CallResult result = setFields({"Width", "WidthUnit"}, {others});
    for (const char* const name : others) {
        EXPECT_EQ(result.output().fieldIndex(name), std::nullopt) << name;
    }
    EXPECT_FALSE(result.output().field(0, 0));
    EXPECT_FALSE(result.output().field(0, 1));
    EXPECT_EQ(result.leftovers(), (Leftovers{.arrays = others.size()}));
    using namespace std::string_view_literals;
    EXPECT_EQ(result.output().fieldIndex("Width\0"sv), std::nullopt);
    EXPECT_EQ(result.output().fieldIndex("WidthUnit"sv.substr(0, 5)), 0);
}

}  // namespace
}  // namespace zephra
