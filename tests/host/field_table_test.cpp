// Field names, in any order.
#include "field_table.h"

#include <cstddef>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <utility>
#include <vector>

#include "run.h"

namespace zephra {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Names = std::vector<const char*>;

TEST(FieldTable, FindsOnlyWholeNamesInTheirOwnCase) {
    FieldTable table(Names{"Width", "WidthUnit"});
    for (const char* const name :
         {"", "W", "Widt", "width", "Width ", "Wodth", "WidthUni", "Height"}) {
        EXPECT_EQ(table.find(name), std::nullopt) << name;
        EXPECT_EQ(table.findNext(name), std::nullopt) << name;
    }
    using namespace std::string_view_literals;
    EXPECT_EQ(table.find("Width\0"sv), std::nullopt);
    EXPECT_EQ(table.find("WidthUnit"sv.substr(0, 5)), 0);
}

/// Looks each of `names` up in both ways, three times over.
void expectFound(FieldTable& table, const Names& names,
                 const std::vector<std::optional<std::size_t>>& expected) {
    ASSERT_EQ(names.size(), expected.size());
    for (int element = 0; element < 3; ++element) {
        for (std::size_t i = 0; i < names.size(); ++i) {
            EXPECT_EQ(table.findNext(names[i]), expected[i]) << names[i];
            EXPECT_EQ(table.find(names[i]), expected[i]) << names[i];
        }
    }
}

TEST(FieldTable, FindsNamesInAnyOrder) {
    const Names names{"a", "b", "c", "d"};
    const std::vector<std::pair<Names, std::vector<std::optional<std::size_t>>>> orders{
        {{"a", "b", "c", "d"}, {0, 1, 2, 3}},
        {{"d", "c", "b", "a"}, {3, 2, 1, 0}},
        {{"c", "a", "d", "b"}, {2, 0, 3, 1}},
        {{"b", "d"}, {1, 3}},
        {{"a", "a", "b", "a", "c"}, {0, 0, 1, 0, 2}},
        {{"d"}, {3}},
        {{"a", "x", "b", "", "c", "dd"}, {0, std::nullopt, 1, std::nullopt, 2, std::nullopt}},
    };
    for (const auto& [order, expected] : orders) {
        FieldTable fresh(names);
        expectFound(fresh, order, expected);
    }
    FieldTable one(names);
    for (const auto& [order, expected] : orders) {
        expectFound(one, order, expected);
    }
}

TEST(FieldTable, FindsTheFirstOfFieldsWithOneNameInAnyOrder) {
    const Names names{"twin", "twin", "a", "twin", "b", "b"};
    const std::vector<std::pair<Names, std::vector<std::optional<std::size_t>>>> orders{
        {{"twin", "twin", "a", "twin", "b", "b"}, {0, 0, 2, 0, 4, 4}},
        {{"a", "twin", "b"}, {2, 0, 4}},
        {{"b", "b", "twin"}, {4, 4, 0}},
    };
    for (const auto& [order, expected] : orders) {
        FieldTable table(names);
        expectFound(table, order, expected);
    }
    EXPECT_EQ(FieldTable(names).name(5), "b");
}

TEST(Fields, WithOneNameStayEmptyButTheFirst) {
    const CallResult result = run([](qvArray*& output) {
        output = makeStruct({2}, {"twin", "twin", "a"});
        for (std::size_t element = 0; element < 2; ++element) {
            for (const char* const name : {"twin", "twin", "a"}) {
                qvSetField(output, element, name, qvCreateString(name));
            }
        }
    });
    EXPECT_EQ(result.output().fieldIndex("twin"), 0);
    EXPECT_EQ(result.output().fieldName(1), "twin");
    for (std::size_t element = 0; element < 2; ++element) {
        EXPECT_EQ(result.output().field(element, 0).text(), "twin");
        EXPECT_FALSE(result.output().field(element, 1));
        EXPECT_EQ(result.output().field(element, 2).text(), "a");
    }
    EXPECT_THAT(result.misuses(), IsEmpty());
}

TEST(Fields, AreStoredInAnyOrderOfEachElement) {
    const CallResult result = run([](qvArray*& output) {
        output = makeStruct({3}, {"a", "b", "c"});
        const Names orders[] = {{"c", "b", "a"}, {"a", "x", "b", "c"}, {"b", "a"}};
        double number = 0;
        for (std::size_t element = 0; element < 3; ++element) {
            for (const char* const name : orders[element]) {
                qvSetField(output, element, name, qvCreateDoubleScalar(++number));
            }
        }
    });
    const auto number = [&](std::size_t element, std::size_t field) {
        return result.output().field(element, field).numbers();
    };
    EXPECT_THAT(number(0, 0), ElementsAre(3));
    EXPECT_THAT(number(0, 1), ElementsAre(2));
    EXPECT_THAT(number(0, 2), ElementsAre(1));
    EXPECT_THAT(number(1, 0), ElementsAre(4));
    EXPECT_THAT(number(1, 1), ElementsAre(6));
    EXPECT_THAT(number(1, 2), ElementsAre(7));
    EXPECT_THAT(number(2, 0), ElementsAre(9));
    EXPECT_THAT(number(2, 1), ElementsAre(8));
    EXPECT_FALSE(result.output().field(2, 2));
    EXPECT_EQ(result.leftovers(), (Leftovers{.arrays = 1})) << "there is no field x";
}

}  // namespace
}  // namespace zephra
