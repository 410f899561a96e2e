// Values of every data type, inside and outside their entry, in every encoding.
#include <bit>

#include "support/file_test.h"

namespace veltrace::test {

namespace {

constexpr double kNaNWithPayload = std::bit_cast<double>(0xFFF8000000ABCDEF);

TEST(DataTypes, KeepTheirSignAndEveryDigit) {
    using Float = std::numeric_limits<float>;
    expectShown({
        {Dir().bytes(kMake, {0, 127, 255}).bytes(kModel, {1, 2, 3, 4, 5, 6, 7, 8, 255}),
         "Make Model", "3x1 [0 127 255]; 9x1 [1 2 3 4 5 6 7 8 255]"},
        {Dir().ascii(kMake, "abc").ascii(kModel, "a longer text"), "Make Model",
         "'abc\\0'; 'a longer text\\0'"},
        {Dir().shorts(kMake, {258, 65535}).shorts(kModel, {0, 1, 32767, 32768, 65535}),
         "Make Model", "2x1 [258 65535]; 5x1 [0 1 32767 32768 65535]"},
        {Dir().longs(kMake, {16909060}).longs(kModel, {0, 2147483648, 4294967295}), "Make Model",
         "16909060; 3x1 [0 2147483648 4294967295]"},
        {Dir().rationals(kMake, {{1, 8}}).rationals(kModel, {{4294967295, 2}, {3, 4}}),
         "Make Model", "0.125; 2x1 [2147483647.5 0.75]"},
        {Dir().signedBytes(kMake, {-128, -1, 0, 127}), "Make", "4x1 [-128 -1 0 127]"},
        {Dir().signedBytes(kMake, {1, 2, 3, 4, 5, 6, 7, 8, -9}), "Make",
         "9x1 [1 2 3 4 5 6 7 8 -9]"},
        {Dir().undefined(kMake, {0, 128, 255}), "Make", "3x1 [0 128 255]"},
        {Dir().undefined(kMake, {1, 2, 3, 4, 5, 6, 7, 8, 200}), "Make",
         "9x1 [1 2 3 4 5 6 7 8 200]"},
        {Dir().signedShorts(kMake, {-32768, 258}), "Make", "2x1 [-32768 258]"},
        {Dir().signedShorts(kMake, {-1, 0, 1, 32767, -258}), "Make", "5x1 [-1 0 1 32767 -258]"},
        {Dir().signedLongs(kMake, {-16909060}), "Make", "-16909060"},
        {Dir().signedLongs(kMake, {-2147483647 - 1, -1, 2147483647}), "Make",
         "3x1 [-2147483648 -1 2147483647]"},
        {Dir().signedRationals(kMake, {{-1, 2}}), "Make", "-0.5"},
        {Dir().signedRationals(kMake, {{3, -4}, {-5, -8}}), "Make", "2x1 [-0.75 0.625]"},
        {Dir().floats(kMake, {0.1F}), "Make", "0.10000000149011612"},
        {Dir().floats(kMake, {-2.5F, Float::denorm_min(), -Float::infinity()}), "Make",
         "3x1 [-2.5 1.401298464324817e-45 -inf]"},
        {Dir().doubles(kMake, {0.1}).doubles(kModel, {-0.0, 5e-324}), "Make Model",
         "0.1; 2x1 [-0 5e-324]"},
    });
}

TEST(DataTypes, OfDoubleIsCopiedBitForBit) {
    for (const Encoding& encoding : kEveryEncoding) {
        const double number =
            ModuleRun(tiffOf(encoding, Dir().doubles(kMake, {kNaNWithPayload}))).number({"Make"});
        EXPECT_EQ(std::bit_cast<std::uint64_t>(number), 0xFFF8000000ABCDEFU);
    }
}

TEST(DataTypes, OfNoElementsGiveNoValue) {
    for (std::uint16_t type = 1; type <= 12; ++type) {
        expectShown({{Dir().entryAt(kMake, type, 0, 0xFFFFFFFF), "Make", "none"}});
    }
}

}  // namespace

}  // namespace veltrace::test
