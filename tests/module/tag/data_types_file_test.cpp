// Values of every data type, inside and outside their entry, in every encoding.
#include <bit>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <string_view>

#include "support/encodings.h"
#include "support/module_run.h"
#include "support/tiff_builder.h"

namespace veltrace::test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Tags whose values are reported as they are.
constexpr std::uint16_t kMake = 271;
constexpr std::uint16_t kModel = 272;

class DataTypes : public ::testing::TestWithParam<Encoding> {
protected:
    [[nodiscard]] ModuleRun run() const {
        ModuleRun run(file.bytes());
        EXPECT_THAT(run.messages(), IsEmpty());
        return run;
    }

    TiffBuilder file{GetParam().order, GetParam().flavour};
};

TEST_P(DataTypes, ByteIsUnsigned) {
    file.image().bytes(kMake, {0, 127, 128, 255}).bytes(kModel, {1, 2, 3, 4, 5, 6, 7, 8, 255});
    const ModuleRun run = this->run();
    EXPECT_THAT(run.numbers({"Make"}), ElementsAre(0, 127, 128, 255));
    EXPECT_THAT(run.numbers({"Model"}), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 255));
}

TEST_P(DataTypes, AsciiIsText) {
    file.image().ascii(kMake, "abc").ascii(kModel, "a longer text");
    const ModuleRun run = this->run();
    EXPECT_EQ(run.text({"Make"}), std::string_view("abc\0", 4));
    EXPECT_EQ(run.text({"Model"}), std::string_view("a longer text\0", 14));
}

TEST_P(DataTypes, ShortIsUnsigned) {
    file.image().shorts(kMake, {258, 65535}).shorts(kModel, {0, 1, 32767, 32768, 65535});
    const ModuleRun run = this->run();
    EXPECT_THAT(run.numbers({"Make"}), ElementsAre(258, 65535));
    EXPECT_THAT(run.numbers({"Model"}), ElementsAre(0, 1, 32767, 32768, 65535));
}

TEST_P(DataTypes, LongIsUnsigned) {
    file.image().longs(kMake, {16909060}).longs(kModel, {0, 2147483648, 4294967295});
    const ModuleRun run = this->run();
    EXPECT_THAT(run.numbers({"Make"}), ElementsAre(16909060));
    EXPECT_THAT(run.numbers({"Model"}), ElementsAre(0, 2147483648, 4294967295));
}

TEST_P(DataTypes, RationalIsAQuotientOfUnsignedNumbers) {
    file.image().rationals(kMake, {{1, 8}}).rationals(kModel, {{4294967295, 2}, {3, 4294967295}});
    const ModuleRun run = this->run();
    EXPECT_THAT(run.numbers({"Make"}), ElementsAre(0.125));
    EXPECT_THAT(run.numbers({"Model"}), ElementsAre(2147483647.5, 3.0 / 4294967295.0));
}

TEST_P(DataTypes, SignedByteHasASign) {
    file.image()
        .signedBytes(kMake, {-128, -1, 0, 127})
        .signedBytes(kModel, {1, 2, 3, 4, 5, 6, 7, 8, -9});
    const ModuleRun run = this->run();
    EXPECT_THAT(run.numbers({"Make"}), ElementsAre(-128, -1, 0, 127));
    EXPECT_THAT(run.numbers({"Model"}), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, -9));
}

TEST_P(DataTypes, UndefinedIsUnsignedBytes) {
    file.image().undefined(kMake, {0, 128, 255}).undefined(kModel, {1, 2, 3, 4, 5, 6, 7, 8, 200});
    const ModuleRun run = this->run();
    EXPECT_THAT(run.numbers({"Make"}), ElementsAre(0, 128, 255));
    EXPECT_THAT(run.numbers({"Model"}), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 200));
}

TEST_P(DataTypes, SignedShortHasASign) {
    file.image().signedShorts(kMake, {-32768, 258}).signedShorts(kModel, {-1, 0, 1, 32767, -258});
    const ModuleRun run = this->run();
    EXPECT_THAT(run.numbers({"Make"}), ElementsAre(-32768, 258));
    EXPECT_THAT(run.numbers({"Model"}), ElementsAre(-1, 0, 1, 32767, -258));
}

TEST_P(DataTypes, SignedLongHasASign) {
    file.image()
        .signedLongs(kMake, {-16909060})
        .signedLongs(kModel, {std::numeric_limits<std::int32_t>::min(), -1, 2147483647});
    const ModuleRun run = this->run();
    EXPECT_THAT(run.numbers({"Make"}), ElementsAre(-16909060));
    EXPECT_THAT(run.numbers({"Model"}), ElementsAre(-2147483648.0, -1, 2147483647));
}

TEST_P(DataTypes, SignedRationalIsAQuotientOfSignedNumbers) {
    file.image().signedRationals(kMake, {{-1, 2}}).signedRationals(kModel, {{3, -4}, {-5, -8}});
    const ModuleRun run = this->run();
    EXPECT_THAT(run.numbers({"Make"}), ElementsAre(-0.5));
    EXPECT_THAT(run.numbers({"Model"}), ElementsAre(-0.75, 0.625));
}

TEST_P(DataTypes, FloatIsWidenedExactly) {
    constexpr float kSmallest = std::numeric_limits<float>::denorm_min();
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    file.image().floats(kMake, {0.1F}).floats(kModel, {-2.5F, kSmallest, -kInfinity});
    const ModuleRun run = this->run();
    EXPECT_THAT(run.numbers({"Make"}), ElementsAre(0.100000001490116119384765625));
    EXPECT_THAT(run.numbers({"Model"}),
                ElementsAre(-2.5, 0x1p-149, -std::numeric_limits<double>::infinity()));
}

TEST_P(DataTypes, DoubleIsCopiedBitForBit) {
    constexpr std::uint64_t kNaNWithPayload = 0xFFF8000000ABCDEF;
    file.image()
        .doubles(kMake, {0.1})
        .doubles(kModel, {-0.0, std::bit_cast<double>(kNaNWithPayload), 5e-324});
    const ModuleRun run = this->run();
    EXPECT_THAT(run.numbers({"Make"}), ElementsAre(0.1));
    const auto numbers = run.numbers({"Model"});
    ASSERT_EQ(numbers.size(), 3U);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(numbers[0]), 0x8000000000000000U);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(numbers[1]), kNaNWithPayload);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(numbers[2]), 1U);
}

TEST_P(DataTypes, OfNoElementsGiveNoValue) {
    for (std::uint16_t type = 1; type <= 12; ++type) {
        TiffBuilder empty(GetParam().order, GetParam().flavour);
        empty.image().entryAt(kMake, type, 0, 0xFFFFFFFF);
        const ModuleRun run(empty.bytes());
        EXPECT_THAT(run.messages(), IsEmpty());
        EXPECT_TRUE(run.hasField({"Make"}));
        EXPECT_FALSE(run.value({"Make"})) << "type " << type;
    }
}

INSTANTIATE_TEST_SUITE_P(InEveryEncoding, DataTypes, ::testing::ValuesIn(kEveryEncoding),
                         encodingName);

}  // namespace

}  // namespace veltrace::test
