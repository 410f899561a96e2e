// Fields and cells: values stored, replaced and left behind.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "run.h"

namespace zephra {
namespace {

using testing::ElementsAre;

TEST(Fields, StoreOneValueForEachElementAndName) {
    const CallResult result = run([](qvArray*& output) {
        output = makeStruct({2, 1}, {"Name", "Size"});
        qvSetField(output, 0, "Name", qvCreateString("first"));
        qvSetField(output, 1, "Name", qvCreateString("second"));
        qvSetField(output, 1, "Size", qvCreateDoubleScalar(12));
    });
    const Value value = result.output();
    EXPECT_EQ(value.field(0, "Name").text(), "first");
    EXPECT_FALSE(value.field(0, "Size"));
    EXPECT_EQ(value.field(1, "Name").text(), "second");
    EXPECT_THAT(value.field(1, "Size").numbers(), ElementsAre(12));
    EXPECT_EQ(value.field(1, 0).text(), "second");
    EXPECT_EQ(result.leftovers(), Leftovers{});
}

TEST(Fields, OfAnUnknownNameAreNotStoredAndNoMisuse) {
    const CallResult result = run([](qvArray*& output) {
        output = makeStruct({1}, {"Known"});
        qvSetField(output, 0, "known", qvCreateDoubleScalar(1));
        qvSetField(output, 0, "Knownn", nullptr);
    });
    EXPECT_FALSE(result.output().field(0, "Known"));
    EXPECT_EQ(result.leftovers(), (Leftovers{.arrays = 1}));
}

TEST(Fields, AcceptAValueThatFoundNoPlaceBefore) {
    const CallResult result = run([](qvArray*& output) {
        output = makeStruct({1}, {"Known"});
        qvArray* const value = qvCreateDoubleScalar(3);
        qvSetField(output, 0, "Unknown", value);
        qvSetField(output, 0, "Known", value);
    });
    EXPECT_THAT(result.output().field(0, "Known").numbers(), ElementsAre(3));
}

TEST(Fields, KeepTheLastValueStored) {
    const CallResult result = run([](qvArray*& output) {
        output = makeStruct({1}, {"Text"});
        qvArray* const cell = makeCell({1});
        qvSetCell(cell, 0, qvCreateString("below the first"));
        qvSetField(output, 0, "Text", cell);
        qvSetField(output, 0, "Text", qvCreateString("last"));
    });
    EXPECT_EQ(result.output().field(0, "Text").text(), "last");
    // The structure owned the first value, so it is not left behind.
    EXPECT_EQ(result.leftovers(), Leftovers{});
}

TEST(Fields, AreEmptiedByNull) {
    const CallResult result = run([](qvArray*& output) {
        output = makeStruct({1}, {"Text"});
        qvSetField(output, 0, "Text", qvCreateString("gone"));
        qvSetField(output, 0, "Text", nullptr);
        qvSetField(output, 0, "Text", nullptr);
    });
    EXPECT_FALSE(result.output().field(0, "Text"));
    EXPECT_EQ(result.leftovers(), Leftovers{});
}

TEST(Cells, StoreValuesAndAreEmptiedByNull) {
    const CallResult result = run([](qvArray*& output) {
        output = makeCell({1, 3});
        qvSetCell(output, 0, qvCreateString("first"));
        qvSetCell(output, 1, qvCreateString("gone"));
        qvSetCell(output, 1, nullptr);
        qvSetCell(output, 2, makeCell({1}));
    });
    EXPECT_EQ(result.output().cell(0).text(), "first");
    EXPECT_FALSE(result.output().cell(1));
    EXPECT_EQ(result.output().cell(2).className(), "cell");
    EXPECT_EQ(result.leftovers(), Leftovers{});
}

TEST(Output, ExcludesWhatItDoesNotReach) {
    const CallResult result = run([](qvArray*& output) {
        qvArray* const outside = makeCell({1});
        qvSetCell(outside, 0, qvCreateString("outside"));
        qvCreateDoubleScalar(1);
        output = makeCell({1});
        qvSetCell(output, 0, qvCreateString("inside"));
    });
    EXPECT_EQ(result.output().cell(0).text(), "inside");
    EXPECT_EQ(result.leftovers(), (Leftovers{.arrays = 3}));
}

TEST(Output, MayBeMissing) {
    const CallResult result = run([] { qvCreateDoubleScalar(1); });
    EXPECT_FALSE(result.output());
    EXPECT_EQ(result.error(), std::nullopt);
    EXPECT_EQ(result.leftovers(), (Leftovers{.arrays = 1}));
}

TEST(Output, OutlivesTheResultThatWasMovedFrom) {
    CallResult first = run([](qvArray*& output) { output = qvCreateString("kept"); });
    CallResult second = run([](qvArray*& output) { output = qvCreateString("dropped"); });
    second = std::move(first);
    EXPECT_EQ(second.output().text(), "kept");
}

TEST(Output, IsNullAfterAnError) {
    const CallResult result = run([](qvArray*& output) {
        output = makeCell({1});
        qvSetCell(output, 0, qvCreateString("lost"));
        qvMalloc(10);
        qvxErrMsgIdAndTxt("a:b", "no");
    });
    EXPECT_FALSE(result.output());
    EXPECT_EQ(result.leftovers(), (Leftovers{.blocks = 1, .blockBytes = 10, .arrays = 2}));
}

}  // namespace
}  // namespace zephra
