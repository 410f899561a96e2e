// Views of values, in places that a caller may not expect.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "run.h"

namespace zephra {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(NullValue, ReadsAsAnEmptyDoubleArray) {
    const Value value;
    EXPECT_FALSE(value);
    EXPECT_EQ(value.classCode(), qvClassDouble);
    EXPECT_EQ(value.className(), "double");
    EXPECT_THAT(value.dimensions(), ElementsAre(0, 0));
    EXPECT_EQ(value.size(), 0);
    EXPECT_TRUE(value.empty());
    EXPECT_THAT(value.numbers(), IsEmpty());
    EXPECT_THAT(value.characters(), IsEmpty());
    EXPECT_EQ(value.text(), "");
    EXPECT_THAT(value.logicals(), IsEmpty());
    EXPECT_EQ(value.fieldCount(), 0);
    EXPECT_EQ(value.fieldIndex("a"), std::nullopt);
    EXPECT_FALSE(value.field(0, "a"));
    EXPECT_FALSE(value.field(0, 0));
    EXPECT_FALSE(value.cell(0));
}

TEST(Value, HasNoElementsOfAnotherClass) {
    const CallResult result = run([](qvArray*& output) {
        output = makeCell({4});
        qvSetCell(output, 0, qvCreateString("text"));
        qvSetCell(output, 1, qvCreateDoubleScalar(1));
        qvSetCell(output, 2, makeNumeric({1}, qvClassLogical));
        qvSetCell(output, 3, makeStruct({1}, {"a"}));
    });
    const Value cell = result.output();
    EXPECT_THAT(cell.numbers(), IsEmpty());
    EXPECT_EQ(cell.fieldCount(), 0);
    EXPECT_FALSE(cell.field(0, 0));
    EXPECT_THAT(cell.cell(0).numbers(), IsEmpty());
    EXPECT_FALSE(cell.cell(0).cell(0));
    EXPECT_THAT(cell.cell(1).characters(), IsEmpty());
    EXPECT_EQ(cell.cell(1).text(), "");
    EXPECT_THAT(cell.cell(1).logicals(), IsEmpty());
    EXPECT_THAT(cell.cell(2).numbers(), IsEmpty());
    EXPECT_FALSE(cell.cell(3).cell(0));
}

TEST(Value, IsNullPastTheEnd) {
    const CallResult result = run([](qvArray*& output) {
        output = makeCell({1});
        qvArray* const structure = makeStruct({1}, {"a"});
        qvSetField(structure, 0, "a", qvCreateDoubleScalar(1));
        qvSetCell(output, 0, structure);
    });
    const Value structure = result.output().cell(0);
    EXPECT_TRUE(structure.field(0, "a"));
    EXPECT_TRUE(structure.field(0, 0));
    EXPECT_FALSE(structure.field(0, 1));
    EXPECT_FALSE(structure.field(1, 0));
    EXPECT_FALSE(structure.field(1, "a"));
    EXPECT_FALSE(structure.field(0, "b"));
    EXPECT_FALSE(result.output().cell(1));
}

TEST(Value, ReadsALargeStructArray) {
    constexpr std::size_t kElements = 20'000;
    std::vector<std::string> names;
    std::vector<const char*> pointers;
    for (int i = 0; i < 40; ++i) {
        names.push_back("Field" + std::to_string(i));
    }
    for (const std::string& name : names) {
        pointers.push_back(name.c_str());
    }
    const CallResult result = runWith({}, {}, [&](qvArray*& output, auto /*inputs*/) {
        output = makeStruct({kElements}, pointers);
        for (std::size_t element = 0; element < kElements; ++element) {
            for (std::size_t field = 0; field < names.size(); ++field) {
                qvSetField(output, element, pointers[field],
                           qvCreateDoubleScalar(static_cast<double>(element * 100 + field)));
            }
        }
    });
    EXPECT_EQ(result.leftovers(), Leftovers{});
    EXPECT_THAT(result.output().dimensions(), ElementsAre(kElements, 1));
    EXPECT_EQ(result.output().field(12'345, "Field7").numbers().front(), 1'234'507);
    EXPECT_EQ(result.output().field(19'999, "Field39").numbers().front(), 1'999'939);
}

}  // namespace
}  // namespace zephra
