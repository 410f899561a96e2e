// Results that nest far deeper than recursion could follow.
#include <gtest/gtest.h>

#include "run.h"

namespace zephra {
namespace {

constexpr int kDepth = 1'000'000;

TEST(DeepNesting, BuiltFromTheInsideIsKeptAndFreed) {
    const CallResult result = run([](qvArray*& output) {
        output = qvCreateDoubleScalar(7);
        for (int level = 0; level < kDepth; ++level) {
            qvArray* const outer = makeStruct({1}, {"down"});
            qvSetField(outer, 0, "down", output);
            output = outer;
        }
    });
    EXPECT_EQ(result.leftovers(), Leftovers{});
    Value value = result.output();
    int depth = 0;
    for (; value.fieldCount() == 1; value = value.field(0, "down")) {
        ++depth;
    }
    EXPECT_EQ(depth, kDepth);
    EXPECT_EQ(value.numbers().front(), 7);
}

TEST(DeepNesting, BuiltFromTheOutsideIsKeptAndFreed) {
    const CallResult result = run([](qvArray*& output) {
        output = makeCell({1});
        qvArray* inner = output;
        for (int level = 1; level < kDepth; ++level) {
            qvArray* const next = makeCell({1});
            qvSetCell(inner, 0, next);
            inner = next;
        }
    });
    EXPECT_EQ(result.leftovers(), Leftovers{});
    int depth = 0;
    for (Value value = result.output(); value; value = value.cell(0)) {
        ++depth;
    }
    EXPECT_EQ(depth, kDepth);
}

TEST(DeepNesting, IsReclaimedWhenReplacedAndAfterAnError) {
    const CallResult result = run([] {
        qvArray* const root = makeCell({1});
        for (int round = 0; round < 2; ++round) {
            qvArray* deep = makeCell({1});
            for (int level = 1; level < kDepth / 2; ++level) {
                qvArray* const outer = makeCell({1});
                qvSetCell(outer, 0, deep);
                deep = outer;
            }
            qvSetCell(root, 0, deep);
        }
        qvxErrMsgIdAndTxt("a:b", "too deep");
    });
    EXPECT_FALSE(result.output());
    EXPECT_EQ(result.leftovers(), (Leftovers{.arrays = 1 + kDepth / 2}));
}

}  // namespace
}  // namespace zephra
