// Misuse that a strict host reports and every host survives.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "run.h"

namespace zephra {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Misuse, StoringAValueTwice) {
    const CallResult result = runWith(kStrict, {}, [](qvArray*& output) {
        output = makeStruct({1}, {"a", "b"});
        qvArray* const value = qvCreateDoubleScalar(5);
        qvSetField(output, 0, "a", value);
        qvSetField(output, 0, "b", value);
        qvSetField(output, 0, "a", value);
    });
    EXPECT_THAT(result.misuses(),
                ElementsAre("qvSetField: the value is already stored in an array",
                            "qvSetField: the value is already stored in an array"));
    EXPECT_THAT(result.output().field(0, "a").numbers(), ElementsAre(5));
    EXPECT_FALSE(result.output().field(0, "b"));
}

TEST(Misuse, StoringAnArrayInItself) {
    const CallResult result = runWith(kStrict, {}, [](qvArray*& output) {
        output = makeCell({1});
        qvSetCell(output, 0, output);
    });
    EXPECT_THAT(result.misuses(), ElementsAre("qvSetCell: the value would contain itself"));
    EXPECT_FALSE(result.output().cell(0));
}

TEST(Misuse, StoringAnArrayBelowItself) {
    const CallResult result = runWith(kStrict, {}, [](qvArray*& output) {
        output = makeCell({1});
        qvArray* const middle = makeStruct({1}, {"down"});
        qvArray* const inner = makeCell({1});
        qvSetField(middle, 0, "down", inner);
        qvSetCell(output, 0, middle);
        qvSetCell(inner, 0, output);
    });
    EXPECT_THAT(result.misuses(), ElementsAre("qvSetCell: the value would contain itself"));
    EXPECT_FALSE(result.output().cell(0).field(0, "down").cell(0));
}

TEST(Misuse, ReturningAStoredValue) {
    const CallResult result = runWith(kStrict, {}, [](qvArray*& output) {
        qvArray* const cell = makeCell({1});
        output = qvCreateDoubleScalar(1);
        qvSetCell(cell, 0, output);
    });
    EXPECT_THAT(result.misuses(),
                ElementsAre("outputs[0]: the value is already stored in an array"));
    EXPECT_FALSE(result.output());
    EXPECT_EQ(result.leftovers(), (Leftovers{.arrays = 2}));
}

TEST(Misuse, UsingAForeignPointer) {
    alignas(16) unsigned char junk[256] = {};
    auto* const foreign = reinterpret_cast<qvArray*>(junk);
    const CallResult result = runWith(kStrict, {}, [&](qvArray*& output) {
        qvArray* const cell = makeCell({1});
        qvSetCell(cell, 0, foreign);
        qvSetCell(foreign, 0, cell);
        EXPECT_EQ(qvGetClassCode(foreign), 0);
        EXPECT_STREQ(qvGetClassName(foreign), "");
        EXPECT_EQ(qvGetData(foreign), nullptr);
        EXPECT_STREQ(qvArrayToString(foreign), "");
        output = foreign;
    });
    EXPECT_THAT(result.misuses(),
                ElementsAre("qvSetCell: the value does not belong to this call",
                            "qvSetCell: the array does not belong to this call",
                            "qvGetClassCode: the array does not belong to this call",
                            "qvGetClassName: the array does not belong to this call",
                            "qvGetData: the array does not belong to this call",
                            "qvArrayToString: the array does not belong to this call",
                            "outputs[0]: the array does not belong to this call"));
    EXPECT_FALSE(result.output());
}

TEST(Misuse, UsingAnArrayOfAnEarlierCall) {
    qvArray* earlier = nullptr;
    const CallResult first =
        runWith(kStrict, {}, [&](qvArray*& output) { output = earlier = makeCell({1}); });
    const CallResult second = runWith(kStrict, {}, [&](qvArray*& output) {
        qvSetCell(earlier, 0, qvCreateDoubleScalar(1));
        output = makeCell({1});
        qvSetCell(output, 0, earlier);
    });
    EXPECT_THAT(second.misuses(), ElementsAre("qvSetCell: the array does not belong to this call",
                                              "qvSetCell: the value does not belong to this call"));
    EXPECT_FALSE(first.output().cell(0));
    EXPECT_FALSE(second.output().cell(0));
}

TEST(Misuse, ReturningTheInsideOfAnArray) {
    const CallResult result = runWith(kStrict, {}, [](qvArray*& output) {
        qvArray* const array = makeNumeric({4});
        output = reinterpret_cast<qvArray*>(qvGetData(array));
    });
    EXPECT_THAT(result.misuses(),
                ElementsAre("outputs[0]: the array does not belong to this call"));
    EXPECT_FALSE(result.output());
    EXPECT_EQ(result.leftovers(), (Leftovers{.arrays = 1}));
}

TEST(Misuse, UsingAReplacedValue) {
    const CallResult result = runWith(kStrict, {}, [](qvArray*& output) {
        output = makeCell({2});
        qvArray* const replaced = makeCell({1});
        qvArray* const below = qvCreateDoubleScalar(1);
        qvSetCell(replaced, 0, below);
        qvSetCell(output, 0, replaced);
        qvSetCell(output, 0, qvCreateDoubleScalar(2));
        qvSetCell(output, 1, replaced);
        qvSetCell(output, 1, below);
        EXPECT_EQ(qvGetClassCode(replaced), 0);
    });
    EXPECT_THAT(result.misuses(),
                ElementsAre("qvSetCell: the value does not belong to this call",
                            "qvSetCell: the value does not belong to this call",
                            "qvGetClassCode: the array does not belong to this call"));
    EXPECT_THAT(result.output().cell(0).numbers(), ElementsAre(2));
    EXPECT_FALSE(result.output().cell(1));
}

TEST(Misuse, ChangingOrStoringAnArgument) {
    const CallResult result =
        runWith(kStrict, {EmptyArgument{qvClassCell}}, [](qvArray*& output, auto inputs) {
            auto* const argument = const_cast<qvArray*>(inputs[0]);
            qvArray* const cell = makeCell({1});
            qvSetCell(argument, 0, nullptr);
            qvSetCell(cell, 0, argument);
            output = argument;
        });
    EXPECT_THAT(result.misuses(),
                ElementsAre("qvSetCell: an argument cannot be changed",
                            "qvSetCell: the value is an argument, which belongs to the host",
                            "outputs[0]: the array does not belong to this call"));
    EXPECT_FALSE(result.output());
}

TEST(Misuse, AnIndexPastTheEnd) {
    const CallResult result = runWith(kStrict, {}, [](qvArray*& output) {
        output = makeCell({3});
        qvSetCell(output, 3, qvCreateDoubleScalar(1));
        qvSetField(makeStruct({2}, {"a"}), 2, "a", nullptr);
        qvSetCell(makeCell({0, 0}), 0, nullptr);
    });
    EXPECT_THAT(result.misuses(), ElementsAre("qvSetCell: index 3 is past the end of 3 elements",
                                              "qvSetField: index 2 is past the end of 2 elements",
                                              "qvSetCell: index 0 is past the end of 0 elements"));
    EXPECT_EQ(result.leftovers(), (Leftovers{.arrays = 3}));
}

TEST(Misuse, AWrongClass) {
    const CallResult result = runWith(kStrict, {}, [](qvArray*& output) {
        output = makeCell({1});
        qvArray* const structure = makeStruct({1}, {"a"});
        qvSetField(output, 0, "a", nullptr);
        qvSetCell(structure, 0, nullptr);
        EXPECT_EQ(qvGetData(output), nullptr);
        EXPECT_EQ(qvGetData(structure), nullptr);
        EXPECT_STREQ(qvArrayToString(structure), "");
        EXPECT_EQ(makeNumeric({1}, qvClassCell), nullptr);
        EXPECT_EQ(makeNumeric({1}, static_cast<qvClass>(5)), nullptr);
        EXPECT_EQ(makeNumeric({1}, qvClassLogical, qvComplex), nullptr);
    });
    EXPECT_THAT(result.misuses(),
                ElementsAre("qvSetField: the array has class cell, it must be struct",
                            "qvSetCell: the array has class struct, it must be cell",
                            "qvGetData: a cell or struct array has no data",
                            "qvGetData: a cell or struct array has no data",
                            "qvArrayToString: only a char array has text",
                            "qvCreateNumericArray: no numeric array has this class",
                            "qvCreateNumericArray: no numeric array has this class",
                            "qvCreateNumericArray: no numeric array has this class"));
}

TEST(Misuse, MissingArraysAndNames) {
    const CallResult result = runWith(kStrict, {}, [] {
        const char* const names[] = {"a", nullptr};
        EXPECT_EQ(qvCreateString(nullptr), nullptr);
        EXPECT_EQ(qvCreateStructArray(0, nullptr, -1, names), nullptr);
        EXPECT_EQ(qvCreateStructArray(0, nullptr, 1, nullptr), nullptr);
        EXPECT_EQ(qvCreateStructArray(0, nullptr, 2, names), nullptr);
        qvSetField(makeStruct({1}, {"a"}), 0, nullptr, nullptr);
        qvSetCell(nullptr, 0, nullptr);
        EXPECT_EQ(qvGetClassCode(nullptr), 0);
    });
    EXPECT_THAT(result.misuses(),
                ElementsAre("qvCreateString: no text is given",
                            "qvCreateStructArray: no field names are given",
                            "qvCreateStructArray: no field names are given",
                            "qvCreateStructArray: a field name is missing",
                            "qvSetField: no field name is given", "qvSetCell: no array is given",
                            "qvGetClassCode: no array is given"));
}

TEST(Misuse, FreeingAForeignOrFreedBlock) {
    const CallResult result = runWith(kStrict, {}, [] {
        int foreign = 0;
        qvFree(&foreign);
        void* const block = qvMalloc(8);
        qvFree(static_cast<char*>(block) + 1);
        qvFree(block);
        qvFree(block);
    });
    const std::string sentence =
        "qvFree: the block does not belong to this call, or it is already freed";
    EXPECT_THAT(result.misuses(), ElementsAre(sentence, sentence, sentence));
    EXPECT_EQ(result.leftovers(), Leftovers{});
}

TEST(Misuse, ContinuingAfterTheError) {
    const CallResult result = runWith(kStrict, {}, [](qvArray*& output) {
        try {
            qvxErrMsgIdAndTxt("a:b", "swallowed");
        } catch (...) {
            output = qvCreateDoubleScalar(1);
        }
    });
    EXPECT_THAT(result.misuses(),
                ElementsAre("qvxErrMsgIdAndTxt: the module continued after the error"));
    EXPECT_EQ(result.error(), std::nullopt);
}

TEST(LenientHost, SurvivesMisuseAndReportsNothing) {
    const CallResult result =
        runWith({}, {std::string("argument")}, [](qvArray*& output, auto inputs) {
            auto* const argument = const_cast<qvArray*>(inputs[0]);
            output = makeCell({2});
            qvArray* const value = qvCreateDoubleScalar(5);
            qvSetCell(output, 0, value);
            qvSetCell(output, 1, value);
            qvSetCell(output, 1, output);
            qvSetCell(output, 1, argument);
            qvSetCell(output, 2, qvCreateDoubleScalar(6));
            qvSetField(output, 0, "a", qvCreateDoubleScalar(7));
            qvSetCell(argument, 0, qvCreateDoubleScalar(8));
            qvFree(&output);
        });
    EXPECT_THAT(result.misuses(), IsEmpty());
    EXPECT_THAT(result.output().cell(0).numbers(), ElementsAre(5));
    EXPECT_FALSE(result.output().cell(1));
    EXPECT_EQ(result.leftovers(), (Leftovers{.arrays = 3}));
}

TEST(LenientHost, ReturnsNoArgument) {
    const CallResult result = runWith(
        {}, {1.0}, [](qvArray*& output, auto inputs) { output = const_cast<qvArray*>(inputs[0]); });
    EXPECT_FALSE(result.output());
}

}  // namespace
}  // namespace zephra
