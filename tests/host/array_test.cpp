// Creation and inspection of arrays.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <malloc.h>
#include <span>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "run.h"

namespace zephra {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;

TEST(NumericArray, IsZeroUntilItsDataIsWritten) {
    const CallResult result = run([](qvArray*& output) {
        output = makeNumeric({1, 3});
        EXPECT_EQ(qvGetClassCode(output), 6);
        auto* const data = static_cast<double*>(qvGetData(output));
        data[0] = 1.5;
        data[2] = -0.25;
    });
    EXPECT_EQ(result.output().classCode(), qvClassDouble);
    EXPECT_EQ(result.output().className(), "double");
    EXPECT_THAT(result.output().dimensions(), ElementsAre(1, 3));
    EXPECT_THAT(result.output().numbers(), ElementsAre(1.5, 0, -0.25));
}

TEST(NumericArray, PutsRealPartsBeforeImaginaryOnes) {
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

TEST(NumericArray, StoresALogicalInOneByte) {
    const CallResult result = run([](qvArray*& output) {
        output = makeNumeric({3, 1}, qvClassLogical);
        static_cast<unsigned char*>(qvGetData(output))[1] = 1;
    });
    EXPECT_EQ(result.output().classCode(), qvClassLogical);
    EXPECT_EQ(result.output().className(), "logical");
    EXPECT_THAT(result.output().logicals(), ElementsAre(0, 1, 0));
}

TEST(Shape, OfNoDimensionsIsEmptyAndOfOneAColumn) {
    const CallResult result = run([](qvArray*& output) {
        output = makeCell({5});
        qvSetCell(output, 4, qvCreateNumericArray(0, nullptr, qvClassDouble, qvReal));
    });
    EXPECT_THAT(result.output().dimensions(), ElementsAre(5, 1));
    EXPECT_TRUE(result.output().cell(4));
    EXPECT_THAT(result.output().cell(4).dimensions(), ElementsAre(0, 0));
}

TEST(Shape, IsRequiredAndHasAtMost255Dimensions) {
    run([] {
        EXPECT_EQ(makeCell(std::vector<std::size_t>(256, 1)), nullptr);
        EXPECT_NE(makeCell(std::vector<std::size_t>(255, 1)), nullptr);
        EXPECT_EQ(qvCreateNumericArray(2, nullptr, qvClassDouble, qvReal), nullptr);
        EXPECT_EQ(qvCreateCharArray(1, nullptr), nullptr);
    });
}

TEST(Shape, MustNotOverflow) {
    constexpr std::size_t kHalf = std::size_t{1} << 32;
    constexpr std::size_t kMax = std::numeric_limits<std::size_t>::max();
    const Settings generous{.largestBlock = kMax};
    runWith(generous, {}, [&] {
        EXPECT_EQ(makeChar({kHalf, kHalf}), nullptr);
        EXPECT_EQ(makeCell({kMax, 2}), nullptr);
        EXPECT_EQ(makeNumeric({kMax / 8 + 1}), nullptr);  // its bytes overflow
        EXPECT_EQ(makeNumeric({kMax / 8}), nullptr);      // its bytes and its header do
        EXPECT_EQ(makeStruct({kHalf}, std::vector<const char*>(2048, "x")), nullptr);
    });
}

TEST(Shape, WithAZeroIsEmptyHoweverLargeTheRest) {
    constexpr std::size_t kMax = std::numeric_limits<std::size_t>::max();
    const CallResult result = run([](qvArray*& output) { output = makeCell({kMax, kMax, 0}); });
    EXPECT_THAT(result.output().dimensions(), ElementsAre(kMax, kMax, 0));
    EXPECT_TRUE(result.output().empty());
}

TEST(DoubleScalar, StoresItsNumber) {
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
    const CallResult empty = run([](qvArray*& output) { output = qvCreateString(""); });
    EXPECT_THAT(empty.output().dimensions(), ElementsAre(1, 0));
    EXPECT_EQ(empty.output().text(), "");
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

TEST(StructArray, FindsEachOfManyFields) {
    constexpr std::size_t kFields = 700;
    std::vector<std::string> names;
    for (std::size_t i = 0; i < kFields; ++i) {
        names.push_back("field" + std::to_string(i * 37));
    }
    const CallResult result = run([names](qvArray*& output) mutable {
        std::vector<const char*> pointers;
        for (const std::string& name : names) {
            pointers.push_back(name.c_str());
        }
        output = makeStruct({1}, pointers);
        for (std::size_t turn = 0; turn < kFields; ++turn) {
            const std::size_t i = turn * 11 % kFields;
            qvSetField(output, 0, pointers[i], qvCreateDoubleScalar(static_cast<double>(i)));
        }
        std::ranges::fill(names, "the array has copies");
    });
    for (std::size_t i = 0; i < kFields; ++i) {
        EXPECT_EQ(result.output().fieldIndex(names[i]), i);
        EXPECT_EQ(result.output().fieldName(i), names[i]);
        EXPECT_THAT(result.output().field(0, i).numbers(), ElementsAre(static_cast<double>(i)));
    }
    EXPECT_EQ(result.output().fieldIndex("field1"), std::nullopt);
}

TEST(Inspection, ReturnsTheClass) {
    run([] {
        const std::tuple<qvArray*, int, const char*> arrays[] = {
            {makeCell({1}), 1, "cell"},
            {makeStruct({1}, {"a"}), 2, "struct"},
            {makeNumeric({1}, qvClassLogical), 3, "logical"},
            {makeChar({1}), 4, "char"},
            {makeNumeric({1}), 6, "double"},
        };
        for (const auto& [array, code, name] : arrays) {
            EXPECT_EQ(qvGetClassCode(array), code);
            EXPECT_STREQ(qvGetClassName(array), name);
        }
    });
}

TEST(Inspection, NarrowsTextToLowBytesAndReturnsNaN) {
    EXPECT_TRUE(std::isnan(qvGetNaN()));
    run([] {
        qvArray* const wide = makeChar({1, 3});
        auto* const characters = static_cast<qvChar*>(qvGetData(wide));
        characters[0] = 0x0141;
        characters[2] = 0x00FF;
        char* const text = qvArrayToString(wide);
        EXPECT_EQ(std::string(text, 4), std::string("A\0\xFF\0", 4));
    });
}

bool isAligned(const void* memory) {
    return reinterpret_cast<std::uintptr_t>(memory) % alignof(double) == 0;
}

bool areAll(const auto& elements, double value) {
    return std::ranges::all_of(elements, [value](auto element) { return element == value; });
}

/// Makes an array of each size up to `sizes` with `make` and fills it.
template <class Element>
void expectFreshArrays(std::size_t sizes, qvArray* (*make)(std::size_t size)) {
    run([&] {
        std::vector<std::span<Element>> all;
        for (std::size_t size = 0; size <= sizes; ++size) {
            qvArray* const array = make(size);
            ASSERT_NE(array, nullptr) << size;
            void* const data = qvGetData(array);
            EXPECT_TRUE(isAligned(data));
            all.emplace_back(static_cast<Element*>(data), size);
            ASSERT_TRUE(areAll(all.back(), 0)) << size;
            std::ranges::fill(all.back(), static_cast<Element>(size % 2 + 1));
        }
        for (std::size_t size = 0; size <= sizes; ++size) {
            ASSERT_TRUE(areAll(all[size], static_cast<double>(size % 2 + 1))) << size;
        }
    });
}

TEST(Arrays, OfEverySizeAreAlignedAndZeroAndDoNotOverlap) {
    expectFreshArrays<double>(200, [](std::size_t size) { return makeNumeric({1, size}); });
    expectFreshArrays<double>(150, [](std::size_t size) { return makeNumeric({size, 1, 1}); });
    expectFreshArrays<qvChar>(600, [](std::size_t size) { return makeChar({1, size}); });
    expectFreshArrays<unsigned char>(
        1100, [](std::size_t size) { return makeNumeric({size}, qvClassLogical); });
}

TEST(Arrays, AreZeroAlsoInMemoryThatWasUsedBefore) {
    for (int round = 0; round < 3; ++round) {
        run([] {
            for (const std::size_t size : {3U, 1000U, 300'000U, 1'000'000U}) {
                const std::span data(static_cast<double*>(qvGetData(makeNumeric({size}))), size);
                EXPECT_TRUE(areAll(data, 0)) << size;
                std::ranges::fill(data, -1.0);
            }
        });
    }
}

std::size_t allocatedBytes() {
    const auto info = mallinfo2();  // all zero under AddressSanitizer
    return info.uordblks + info.hblkhd;
}

TEST(Arrays, OutsideTheOutputAreFreedWhenTheCallEnds) {
    constexpr std::size_t kBytes = 1'000'000;
    const std::size_t before = allocatedBytes();
    const CallResult result = run([](qvArray*& output) {
        output = makeCell({2});
        qvSetCell(output, 0, makeNumeric({kBytes}, qvClassLogical));
        for (int i = 0; i < 50; ++i) {
            makeNumeric({kBytes}, qvClassLogical);
            qvSetCell(output, 1, makeNumeric({kBytes}, qvClassLogical));
        }
    });
    EXPECT_LT(allocatedBytes(), before + 3 * kBytes) << "two arrays are in the output";
    EXPECT_THAT(result.output().cell(1).logicals(), Each(0));
    EXPECT_EQ(result.leftovers(), (Leftovers{.arrays = 50}));
}

TEST(Arrays, StoreManyDimensions) {
    const std::pair<std::vector<std::size_t>, std::size_t> shapes[] = {
        {{2, 3, 4}, 24}, {{1, 1, 1, 1, 5}, 5}, {{7, 1}, 7}, {{0, 3, 2}, 0}, {{3, 50, 9}, 1350}};
    for (const auto& shape : shapes) {
        const std::vector<std::size_t>& dimensions = shape.first;
        const std::size_t size = shape.second;
        const CallResult result = run([&](qvArray*& output) {
            output = makeNumeric(dimensions);
            std::fill_n(static_cast<double*>(qvGetData(output)), size, 4.5);
        });
        EXPECT_THAT(result.output().dimensions(), ElementsAreArray(dimensions));
        EXPECT_EQ(result.output().size(), size);
        EXPECT_THAT(result.output().numbers(), ElementsAreArray(std::vector(size, 4.5)));
    }
}

TEST(StructArray, MayHaveNoFields) {
    const CallResult result = run([](qvArray*& output) {
        output = makeStruct({2, 1, 3}, {"inner"});
        qvArray* const inner = makeStruct({4, 1}, {});
        qvSetField(inner, 3, "inner", nullptr);
        qvSetField(output, 5, "inner", inner);
        qvSetField(output, 0, "inner", qvCreateStructArray(0, nullptr, 0, nullptr));
    });
    EXPECT_THAT(result.output().dimensions(), ElementsAre(2, 1, 3));
    const Value inner = result.output().field(5, "inner");
    EXPECT_EQ(inner.className(), "struct");
    EXPECT_THAT(inner.dimensions(), ElementsAre(4, 1));
    EXPECT_EQ(inner.fieldCount(), 0U);
    EXPECT_EQ(inner.fieldIndex("inner"), std::nullopt);
    EXPECT_FALSE(inner.field(0, "inner"));
    EXPECT_EQ(result.output().field(0, "inner").className(), "struct");
}

TEST(OutsideOfACall, EveryFunctionFailsSafely) {
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
