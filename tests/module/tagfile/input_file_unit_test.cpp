// Reads through a window return the same as reads of the file.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/opened_file.h"
#include "tagfile/input_file.h"

namespace veltrace::test {

using namespace module;

namespace {

using testing::IsEmpty;

constexpr std::int64_t kSize = 60'000;  // several windows

TEST(InputFile, ReturnsAllBytesInOrderForAnySizesOfReads) {
    OpenedFile input(countingBytes(kSize));
    std::int64_t position = 0;
    for (std::size_t count = 1; position + static_cast<std::int64_t>(count) <= kSize; count += 7) {
        input.check(position, count);
        position += static_cast<std::int64_t>(count);
    }
}

TEST(InputFile, SeeksAndReadsInsideItsWindowWithoutTheStream) {
    OpenedFile input(countingBytes(kSize));
    input.check(0, 2);
    const std::int64_t end = std::ftell(input->stream());
    ASSERT_GT(end, 1000);
    for (const std::int64_t position : {end - 1, std::int64_t{0}, std::int64_t{500}}) {
        ASSERT_TRUE(input->seek(position));
        EXPECT_EQ(std::ftell(input->stream()), end);
        input.check(position, 1);
    }
    ASSERT_TRUE(input->skip(-501));
    input.check(0, 8);
    ASSERT_TRUE(input->skip(end - 8));
    EXPECT_EQ(input->position(), end);
    EXPECT_EQ(std::ftell(input->stream()), end);
    ASSERT_TRUE(input->skip(-1));
    input.check(end - 1, 1);
    EXPECT_EQ(std::ftell(input->stream()), end);
}

TEST(InputFile, ReadsAcrossTheEndOfItsWindow) {
    for (const std::int64_t before : {0, 1, 3, 9}) {
        OpenedFile input(countingBytes(kSize));
        input.check(0, 2);
        const std::int64_t end = std::ftell(input->stream());
        ASSERT_TRUE(input->seek(end - before));
        input.check(end - before, 10);
        input.check(end - before + 10, 10);
    }
}

TEST(InputFile, ReadsTheSizeOfItsWindowAndMore) {
    for (const std::size_t before : {0U, 5U}) {
        for (const std::size_t count : {16'383U, 16'384U, 16'385U, 16'389U, 40'000U}) {
            OpenedFile input(countingBytes(kSize));
            input.check(0, before);
            input.check(static_cast<std::int64_t>(before), count);
            input.check(static_cast<std::int64_t>(before + count), 6);
            ASSERT_TRUE(input->skip(-20));
            input.check(static_cast<std::int64_t>(before + count) - 14, 30);
        }
    }
}

TEST(InputFile, SeeksOutOfItsWindowForwardAndBackward) {
    OpenedFile input(countingBytes(kSize));
    for (const std::int64_t position : {50'000, 3, 33'000, 32'990, 49'999, 0}) {
        ASSERT_TRUE(input->seek(position));
        input.check(position, 20);
    }
    ASSERT_TRUE(input->skip(40'000));
    input.check(40'020, 4);
    ASSERT_TRUE(input->skip(-40'000));
    input.check(24, 4);
}

TEST(InputFile, RejectsSeeksBeforeTheStartAndKeepsItsPosition) {
    OpenedFile input(countingBytes(kSize));
    EXPECT_FALSE(input->seek(-1));
    EXPECT_FALSE(input->skip(-1));
    input.check(0, 10);
    EXPECT_FALSE(input->seek(-1));
    EXPECT_FALSE(input->skip(-11));
    input.check(10, 10);
    ASSERT_TRUE(input->seek(50'000));
    input.check(50'000, 10);
    EXPECT_FALSE(input->seek(-1));
    EXPECT_FALSE(input->skip(-50'011));
    input.check(50'010, 10);
}

TEST(InputFile, SeeksPastTheEndAndReadsNothingThere) {
    OpenedFile input(countingBytes(100));
    for (const std::int64_t position : {100, 101, 5'000'000}) {
        ASSERT_TRUE(input->seek(position));
        EXPECT_THAT(readBytes(*input, 1), IsEmpty());
        EXPECT_EQ(input->position(), position);
    }
    ASSERT_TRUE(input->seek(7));
    input.check(7, 93);
}

TEST(InputFile, CountsWholeItemsOnly) {
    OpenedFile input(countingBytes(23));
    Bytes items(13, 0xEE);
    EXPECT_EQ(input->read(items.data(), 4, 3), 3U);
    EXPECT_EQ(items, Bytes({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 0xEE}));
    EXPECT_EQ(input->position(), 12);
    Bytes last(16);
    EXPECT_EQ(input->read(last.data(), 8, 2), 1U);
    last.resize(8);
    EXPECT_EQ(last, Bytes({12, 13, 14, 15, 16, 17, 18, 19}));
    EXPECT_EQ(input->position(), 23) << "the incomplete item was read too";
    EXPECT_EQ(input->read(last.data(), 1, 1), 0U);
    ASSERT_TRUE(input->seek(20));
    EXPECT_EQ(input->read(last.data(), 4, 0), 0U);
    EXPECT_EQ(input->position(), 20);
}

}  // namespace

}  // namespace veltrace::test
