// Byte order is changed in place.
#include <gtest/gtest.h>

#include "support/bytes.h"
#include "tagfile/swap_bytes.h"

namespace veltrace::test {

using namespace module;

namespace {

Bytes swapped(Bytes bytes, int elementSize, unsigned count, bool swap = true) {
    swapBytes(bytes.data(), elementSize, count, swap);
    return bytes;
}

const Bytes kSixteen{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};

TEST(SwapBytes, ReversesTheBytesOfEachElement) {
    EXPECT_EQ(swapped(kSixteen, 2, 8),
              (Bytes{2, 1, 4, 3, 6, 5, 8, 7, 10, 9, 12, 11, 14, 13, 16, 15}));
    EXPECT_EQ(swapped(kSixteen, 4, 4),
              (Bytes{4, 3, 2, 1, 8, 7, 6, 5, 12, 11, 10, 9, 16, 15, 14, 13}));
    EXPECT_EQ(swapped(kSixteen, 8, 2),
              (Bytes{8, 7, 6, 5, 4, 3, 2, 1, 16, 15, 14, 13, 12, 11, 10, 9}));
}

TEST(SwapBytes, KeepsTheMiddleOfThreeBytes) {
    EXPECT_EQ(swapped({1, 2, 3, 4, 5, 6}, 3, 2), (Bytes{3, 2, 1, 6, 5, 4}));
}

TEST(SwapBytes, KeepsBytesAfterTheLastElement) {
    EXPECT_EQ(swapped({1, 2, 3, 4, 5, 6}, 2, 2), (Bytes{2, 1, 4, 3, 5, 6}));
}

TEST(SwapBytes, KeepsElementsOfOneByte) {
    EXPECT_EQ(swapped(kSixteen, 1, 16), kSixteen);
}

TEST(SwapBytes, DoesNothingWithoutTheFlagOrWithoutElements) {
    EXPECT_EQ(swapped(kSixteen, 4, 4, false), kSixteen);
    EXPECT_EQ(swapped(kSixteen, 4, 0), kSixteen);
}

}  // namespace

}  // namespace veltrace::test
