// Views of values, also of empty and missing places.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <utility>

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
    constexpr const char* kNames[] = {"Number", "Text", "Other"};
    CallResult first = runWith({}, {}, [&](qvArray*& output) {
        output = makeStruct({kElements}, {std::begin(kNames), std::end(kNames)});
        for (std::size_t i = 0; i < kElements; ++i) {
            qvSetField(output, i, "Number", qvCreateDoubleScalar(static_cast<double>(i)));
            qvSetField(output, i, "Other", qvCreateString("kiln"));
        }
    });
    const CallResult result = std::move(first);
    static_cast<void>(run([](qvArray*& output) { output = makeChar({1, 100}); }));
    EXPECT_EQ(result.leftovers(), Leftovers{});
    EXPECT_THAT(result.output().dimensions(), ElementsAre(kElements, 1));
    for (std::size_t i = 0; i < kElements; ++i) {
        ASSERT_EQ(result.output().field(i, "Number").numbers().front(), static_cast<double>(i));
        ASSERT_FALSE(result.output().field(i, 1));
        ASSERT_EQ(result.output().field(i, 2).text(), "kiln");
    }
}

}  // namespace
}  // namespace zephra
