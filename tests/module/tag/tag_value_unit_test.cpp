// Values of every type, kept inside and outside.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <initializer_list>
#include <limits>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/quiet_call.h"
#include "tag/data_type.h"
#include "tag/tag_value.h"

namespace veltrace::test {

using namespace module;

namespace {

using namespace std::string_view_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNan;

constexpr auto kMostU32 = std::numeric_limits<std::uint32_t>::max();
constexpr auto kLeastI32 = std::numeric_limits<std::int32_t>::min();
constexpr auto kMostI32 = std::numeric_limits<std::int32_t>::max();

/// Of a value of `type` with these words; a rational has two for each element.
template <class Word>
TagValue valueOf(DataType type, const std::vector<Word>& words) {
    const std::size_t count = isRational(type) ? words.size() / 2 : words.size();
    TagValue value(static_cast<std::uint16_t>(type), static_cast<std::uint32_t>(count));
    EXPECT_EQ(value.byteSize(), words.size() * sizeof(Word));
    value.set(reinterpret_cast<const std::byte*>(words.data()));
    return value;
}

TagValue textOf(std::string_view text) {
    return valueOf(DataType::ascii, std::vector<char>(text.begin(), text.end()));
}

std::vector<double> rawOf(const TagValue& value) {
    std::vector<double> numbers(value.rawCount());
    value.copyRaw(numbers.data());
    return numbers;
}

std::vector<double> outputOf(const TagValue& value) {
    std::vector<double> numbers(value.outputCount());
    value.copyOutput(numbers.data());
    return numbers;
}

/// Checks values of 1 to 20 elements, most of them more than fit inside, that repeat `words`.
template <class Word>
void expectNumbers(DataType type, const std::vector<Word>& words,
                   const std::vector<double>& numbers) {
    std::vector<Word> repeated;
    std::vector<double> expected;
    for (std::size_t i = 0; i < 20; ++i) {
        repeated.push_back(words[i % words.size()]);
        expected.push_back(numbers[i % numbers.size()]);
        const TagValue value = valueOf(type, repeated);
        EXPECT_EQ(rawOf(value), expected);
        EXPECT_EQ(outputOf(value), expected);
        EXPECT_EQ(value.firstOutput(), expected.front());
        EXPECT_THAT(value.text(), IsEmpty());
    }
}

TEST(TagValue, WidensTheExtremesOfEveryType) {
    for (const DataType type : {DataType::byte, DataType::undefined}) {
        expectNumbers<std::uint8_t>(type, {255, 0, 128}, {255, 0, 128});
    }
    expectNumbers<std::int8_t>(DataType::signedByte, {-128, 127, -1}, {-128, 127, -1});
    expectNumbers<std::uint16_t>(DataType::unsignedShort, {65535, 0, 32768}, {65535, 0, 32768});
    expectNumbers<std::int16_t>(DataType::signedShort, {-32768, 32767, -1}, {-32768, 32767, -1});
    expectNumbers<std::uint32_t>(DataType::unsignedLong, {kMostU32, 0}, {4294967295.0, 0});
    expectNumbers<std::int32_t>(DataType::signedLong, {kLeastI32, kMostI32, -1},
                                {-2147483648.0, 2147483647.0, -1});
    expectNumbers<float>(DataType::singleFloat, {0x1.fffffep127F, 0x1p-149F, -HUGE_VALF, 0.1F},
                         {0x1.fffffep127, 0x1p-149, -HUGE_VAL, 0x1.99999ap-4});
    expectNumbers<double>(DataType::doubleFloat, {0x1.fffffffffffffp1023, 0x1p-1074, -HUGE_VAL},
                          {0x1.fffffffffffffp1023, 0x1p-1074, -HUGE_VAL});
}

TEST(TagValue, KeepsNumbersThatAreNoneAndTheSignOfZero) {
    const TagValue singles = valueOf<float>(DataType::singleFloat, {std::nanf(""), -0.0F});
    EXPECT_THAT(rawOf(singles), ElementsAre(IsNan(), 0));
    EXPECT_TRUE(std::signbit(outputOf(singles).back()));
    const TagValue doubles = valueOf<double>(DataType::doubleFloat, {std::nan(""), -0.0});
    EXPECT_THAT(outputOf(doubles), ElementsAre(IsNan(), 0));
    EXPECT_TRUE(std::signbit(rawOf(doubles).back()));
}

TEST(TagValue, DividesRationalsWithTheirOwnSign) {
    inQuietCall([] {
        const TagValue one = valueOf<std::uint32_t>(DataType::rational, {kMostU32, 1U << 31});
        EXPECT_THAT(rawOf(one), ElementsAre(4294967295.0, 2147483648.0));
        EXPECT_THAT(outputOf(one), ElementsAre(0x1.fffffffep0));
        const TagValue two =
            valueOf<std::int32_t>(DataType::signedRational, {kLeastI32, -1, -3, kLeastI32});
        EXPECT_THAT(rawOf(two), ElementsAre(-2147483648.0, -1, -3, -2147483648.0));
        EXPECT_THAT(outputOf(two), ElementsAre(2147483648.0, 0x1.8p-30));
        EXPECT_EQ(two.firstOutput(), 2147483648.0);
        EXPECT_FALSE(one.dividesByZero());
        EXPECT_FALSE(two.dividesByZero());
    });
}

TEST(TagValue, MakesNoNumberOfARationalWithoutDenominator) {
    inQuietCall([] {
        const TagValue one = valueOf<std::uint32_t>(DataType::rational, {0, 0});
        EXPECT_THAT(rawOf(one), ElementsAre(0, 0));
        EXPECT_THAT(one.firstOutput(), IsNan());
        EXPECT_TRUE(one.dividesByZero());
        const TagValue three =
            valueOf<std::int32_t>(DataType::signedRational, {0, -5, 1, 4, kLeastI32, 0});
        EXPECT_THAT(outputOf(three), ElementsAre(0, 0.25, IsNan()));
        EXPECT_TRUE(three.dividesByZero());
    });
}

TEST(TagValue, KeepsTheNulsOfTextsWhichAreNoNumbers) {
    for (const std::string_view text :
         {""sv, "\0"sv, "A\0B\0\0"sv, "8 bytes\0"sv, "\0nine\xFF\0\0\0"sv, "longer than all\0"sv}) {
        const TagValue value = textOf(text);
        EXPECT_EQ(value.text(), text);
        EXPECT_EQ(value.count(), text.size());
        EXPECT_EQ(value.rawCount(), 0U);
        EXPECT_EQ(value.outputCount(), 0U);
    }
}

TEST(TagValue, HasNoNumbersAndNoTextBeforeItIsSet) {
    for (std::uint16_t type = 0; type <= 20; ++type) {
        const TagValue value(type, kMostU32);
        EXPECT_EQ(value.type(), type);
        EXPECT_EQ(value.count(), kMostU32);
        EXPECT_EQ(value.rawCount(), 0U);
        EXPECT_EQ(value.outputCount(), 0U);
        EXPECT_FALSE(value.dividesByZero());
        EXPECT_THAT(value.text(), IsEmpty());
    }
    EXPECT_EQ(TagValue().type(), 0);
    EXPECT_EQ(TagValue().count(), 0U);
    EXPECT_EQ(TagValue().byteSize(), 0U);
}

TEST(TagValue, SetToNoElementsHasNoNumbers) {
    for (std::uint16_t type = 1; type <= 12; ++type) {
        TagValue value(type, 0);
        value.set(nullptr);
        EXPECT_EQ(value.rawCount(), 0U);
        EXPECT_EQ(value.outputCount(), 0U);
        EXPECT_FALSE(value.dividesByZero());
        EXPECT_THAT(value.text(), IsEmpty());
    }
}

TEST(TagValue, HasTheBytesOfItsElementsBeyond32Bits) {
    // 4294967295 elements of the sizes of TIFF 6.0; type 13 is an offset.
    const std::uint64_t sizes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};
    for (std::uint16_t type = 0; type < 14; ++type) {
        EXPECT_EQ(TagValue(type, kMostU32).byteSize(), sizes[type] * 4294967295U) << type;
    }
    for (const std::uint16_t type : std::initializer_list<std::uint16_t>{14, 16, 255, 65535}) {
        EXPECT_EQ(TagValue(type, kMostU32).byteSize(), 0U) << type;
    }
}

}  // namespace

}  // namespace veltrace::test
