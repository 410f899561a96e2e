// Creation and inspection of arrays.
#include <cmath>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

#include "run.h"

namespace zephra {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(NumericArray, IsZeroThroughout) {
    const CallResult result = run([](qvArray*& output) { output = makeNumeric({2, 3}); });
    EXPECT_EQ(result.output().classCode(), qvClassDouble);
    EXPECT_EQ(result.output().className(), "double");
    EXPECT_THAT(result.output().dimensions(), ElementsAre(2, 3));
    EXPECT_THAT(result.output().numbers(), ElementsAre(0, 0, 0, 0, 0, 0));
}

TEST(NumericArray, GivesBackWhatIsWrittenToItsData) {
    const CallResult result = run([](qvArray*& output) {
        output = makeNumeric({1, 3});
        auto* const data = static_cast<double*>(qvGetData(output));
        data[0] = 1.5;
        data[2] = -0.25;
    });
    EXPECT_THAT(result.output().numbers(), ElementsAre(1.5, 0, -0.25));
    EXPECT_THAT(result.misuses(), IsEmpty());
}

TEST(NumericArray, KeepsRealPartsInFrontOfImaginaryOnes) {
    const CallResult result = run([](qvArray*& output) {
        output = makeNumeric({2}, qvClassDouble, qvComplex);
        auto* const data = static_cast<double*>(qvGetData(output));
        for (int i = 0; i < 4; ++i) {
            EXPECT_EQ(data[i], 0.0);
            data[i] = i + 1;
        }
    });
    EXPECT_THAT(result.output().dimensions(), ElementsAre(2, 1));
    EXPECT_THAT(result.output().numbers(), ElementsAre(1, 2));
}

TEST(NumericArray, HoldsLogicalsOneByteEach) {
    const CallResult result = run([](qvArray*& output) {
        output = makeNumeric({3, 1}, qvClassLogical);
        static_cast<unsigned char*>(qvGetData(output))[1] = 1;
    });
    EXPECT_EQ(result.output().classCode(), qvClassLogical);
    EXPECT_EQ(result.output().className(), "logical");
    EXPECT_THAT(result.output().logicals(), ElementsAre(0, 1, 0));
}

TEST(NumericArray, HasMoreThanTwoDimensions) {
    const CallResult result = run([](qvArray*& output) { output = makeNumeric({2, 1, 3, 2}); });
    EXPECT_THAT(result.output().dimensions(), ElementsAre(2, 1, 3, 2));
    EXPECT_EQ(result.output().size(), 12);
}

TEST(Shape, OfNoDimensionsIsEmpty) {
    const CallResult result = run(
        [](qvArray*& output) { output = qvCreateNumericArray(0, nullptr, qvClassDouble, qvReal); });
    EXPECT_TRUE(result.output());
    EXPECT_THAT(result.output().dimensions(), ElementsAre(0, 0));
}

TEST(Shape, OfOneDimensionIsAColumn) {
    const CallResult result = run([](qvArray*& output) { output = makeCell({5}); });
    EXPECT_THAT(result.output().dimensions(), ElementsAre(5, 1));
}

TEST(Shape, ThatIsMissingMakesNothing) {
    run([](qvArray*& /*output*/) {
        EXPECT_EQ(qvCreateNumericArray(2, nullptr, qvClassDouble, qvReal), nullptr);
        EXPECT_EQ(qvCreateCharArray(1, nullptr), nullptr);
    });
}

TEST(Shape, ThatOverflowsMakesNothing) {
    constexpr std::size_t kHalf = std::size_t{1} << 32;
    constexpr std::size_t kMost = std::numeric_limits<std::size_t>::max();
    const Settings generous{.largestBlock = kMost};
    runWith(generous, {}, [&](qvArray*& /*output*/, auto /*inputs*/) {
        EXPECT_EQ(makeChar({kHalf, kHalf}), nullptr);
        EXPECT_EQ(makeCell({kMost, 2}), nullptr);
        EXPECT_EQ(makeNumeric({kMost / 8 + 1}), nullptr);  // its bytes overflow
        EXPECT_EQ(makeNumeric({kMost / 8}), nullptr);      // its bytes and its header do
        EXPECT_EQ(makeStruct({kHalf}, std::vector<const char*>(2048, "x")), nullptr);
    });
}

TEST(Shape, WithAZeroIsEmptyHoweverLargeTheRest) {
    constexpr std::size_t kMost = std::numeric_limits<std::size_t>::max();
    const CallResult result = run([](qvArray*& output) { output = makeCell({kMost, kMost, 0}); });
    EXPECT_THAT(result.output().dimensions(), ElementsAre(kMost, kMost, 0));
    EXPECT_TRUE(result.output().empty());
}

TEST(Shape, WithAThousandDimensionsMakesNothing) {
    run([](qvArray*& /*output*/) {
        EXPECT_EQ(makeCell(std::vector<std::size_t>(1000, 1)), nullptr);
        EXPECT_NE(makeCell(std::vector<std::size_t>(255, 1)), nullptr);
    });
}

TEST(DoubleScalar, HoldsItsNumber) {
    const CallResult result = run([](qvArray*& output) { output = qvCreateDoubleScalar(-12.75); });
    EXPECT_THAT(result.output().dimensions(), ElementsAre(1, 1));
    EXPECT_THAT(result.output().numbers(), ElementsAre(-12.75));
}

TEST(String, HasOneElementForEachByte) {
    const CallResult result = run([](qvArray*& output) { output = qvCreateString("a\xE9z"); });
    EXPECT_EQ(result.output().classCode(), qvClassChar);
    EXPECT_EQ(result.output().className(), "char");
    EXPECT_THAT(result.output().dimensions(), ElementsAre(1, 3));
    EXPECT_THAT(result.output().characters(), ElementsAre('a', 0x00E9, 'z'));
    EXPECT_EQ(result.output().text(), "a\xE9z");
}

TEST(String, MayBeEmpty) {
    const CallResult result = run([](qvArray*& output) { output = qvCreateString(""); });
    EXPECT_THAT(result.output().dimensions(), ElementsAre(1, 0));
    EXPECT_EQ(result.output().text(), "");
}

TEST(CharArray, IsNulThroughoutAndWritable) {
    const CallResult result = run([](qvArray*& output) {
        output = makeChar({1, 4});
        static_cast<qvChar*>(qvGetData(output))[1] = 0x20AC;
    });
    EXPECT_THAT(result.output().characters(), ElementsAre(0, 0x20AC, 0, 0));
    EXPECT_EQ(result.output().text(), std::string("\0\xAC\0\0", 4));
}

TEST(CellArray, IsEmptyThroughout) {
    const CallResult result = run([](qvArray*& output) { output = makeCell({2, 2}); });
    EXPECT_EQ(result.output().className(), "cell");
    ASSERT_EQ(result.output().size(), 4);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_FALSE(result.output().cell(i));
    }
}

TEST(StructArray, HasItsFieldsInOrderAndEmpty) {
    const CallResult result = run([](qvArray*& output) {
        output = makeStruct({2, 1}, {"Zeta", "Alpha", ""});
    });
    const Value value = result.output();
    EXPECT_EQ(value.className(), "struct");
    ASSERT_EQ(value.fieldCount(), 3);
    EXPECT_EQ(value.fieldName(0), "Zeta");
    EXPECT_EQ(value.fieldName(1), "Alpha");
    EXPECT_EQ(value.fieldName(2), "");
    for (std::size_t element = 0; element < 2; ++element) {
        for (std::size_t field = 0; field < 3; ++field) {
            EXPECT_FALSE(value.field(element, field));
        }
    }
}

TEST(StructArray, CopiesItsNames) {
    const CallResult result = run([](qvArray*& output) {
        char name[] = "Width";
        output = makeStruct({1}, {name});
        std::strcpy(name, "xxxxx");
    });
    EXPECT_EQ(result.output().fieldName(0), "Width");
}

TEST(StructArray, MayHaveNoFields) {
    const CallResult result =
        run([](qvArray*& output) { output = qvCreateStructArray(0, nullptr, 0, nullptr); });
    EXPECT_EQ(result.output().className(), "struct");
    EXPECT_EQ(result.output().fieldCount(), 0);
    EXPECT_EQ(result.output().fieldIndex("Width"), std::nullopt);
    EXPECT_THAT(result.misuses(), IsEmpty());
}

TEST(StructArray, FindsEachOfManyFields) {
    std::vector<std::string> names;
    for (int i = 0; i < 700; ++i) {
        names.push_back("field" + std::to_string(i * 37));
    }
    const CallResult result = run([&](qvArray*& output) {
        std::vector<const char*> pointers;
        for (const std::string& name : names) {
            pointers.push_back(name.c_str());
        }
        output = makeStruct({1}, pointers);
    });
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(result.output().fieldIndex(names[i]), i);
        EXPECT_EQ(result.output().fieldName(i), names[i]);
    }
    EXPECT_EQ(result.output().fieldIndex("field1"), std::nullopt);
}

TEST(StructArray, FindsTheFirstOfTwoFieldsWithOneName) {
    const CallResult result = run([](qvArray*& output) {
        output = makeStruct({1}, {"a", "twin", "twin"});
    });
    EXPECT_EQ(result.output().fieldCount(), 3);
    EXPECT_EQ(result.output().fieldName(2), "twin");
    EXPECT_EQ(result.output().fieldIndex("twin"), 1);
}

TEST(Inspection, TellsTheClass) {
    const CallResult result = run([](qvArray*& /*output*/) {
        EXPECT_EQ(qvGetClassCode(makeCell({1})), 1);
        EXPECT_EQ(qvGetClassCode(makeStruct({1}, {"a"})), 2);
        EXPECT_EQ(qvGetClassCode(makeNumeric({1}, qvClassLogical)), 3);
        EXPECT_EQ(qvGetClassCode(makeChar({1})), 4);
        EXPECT_EQ(qvGetClassCode(makeNumeric({1})), 6);
        EXPECT_STREQ(qvGetClassName(makeCell({1})), "cell");
        EXPECT_STREQ(qvGetClassName(makeStruct({1}, {"a"})), "struct");
        EXPECT_STREQ(qvGetClassName(makeNumeric({1}, qvClassLogical)), "logical");
        EXPECT_STREQ(qvGetClassName(makeChar({1})), "char");
        EXPECT_STREQ(qvGetClassName(makeNumeric({1})), "double");
    });
    EXPECT_THAT(result.misuses(), IsEmpty());
}

TEST(Inspection, NarrowsTextToLowBytes) {
    run([](qvArray*& /*output*/) {
        qvArray* const wide = makeChar({1, 3});
        auto* const characters = static_cast<qvChar*>(qvGetData(wide));
        characters[0] = 0x0141;
        characters[2] = 0x00FF;
        char* const text = qvArrayToString(wide);
        EXPECT_EQ(std::string(text, 4), std::string("A\0\xFF\0", 4));
    });
}

TEST(Inspection, KnowsANumberThatIsNone) {
    EXPECT_TRUE(std::isnan(qvGetNaN()));
}

TEST(OutsideOfACall, NothingIsMadeAndNothingBreaks) {
    EXPECT_EQ(qvCreateDoubleScalar(1), nullptr);
    EXPECT_EQ(qvCreateString("text"), nullptr);
    EXPECT_EQ(makeCell({1}), nullptr);
    EXPECT_EQ(makeStruct({1}, {"a"}), nullptr);
    EXPECT_EQ(qvMalloc(1), nullptr);
    EXPECT_EQ(qvGetClassCode(nullptr), 0);
    EXPECT_STREQ(qvGetClassName(nullptr), "");
    EXPECT_EQ(qvGetData(nullptr), nullptr);
    EXPECT_ANY_THROW(static_cast<void>(qvArrayToString(nullptr)));
    EXPECT_ANY_THROW(qvxErrMsgIdAndTxt("a:b", "lost"));
    qvxWarnMsgIdAndTxt("a:b", "lost");
    qvSetCell(nullptr, 0, nullptr);
    qvSetField(nullptr, 0, "a", nullptr);
    int notABlock = 0;
    qvFree(&notABlock);
}

}  // namespace
}  // namespace zephra
