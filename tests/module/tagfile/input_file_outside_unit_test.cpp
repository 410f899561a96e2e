// Files of another size than stated, files without a position, and opening and closing.
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "support/memory_file.h"
#include "support/opened_file.h"
#include "support/paced_file.h"
#include "tagfile/input_file.h"

namespace veltrace::test {

using namespace module;

namespace {

using testing::IsEmpty;

TEST(InputFile, ReadsAllOfAFileThatIsLargerThanStated) {
    for (const std::int64_t stated : {0, 1, 100, 20'000}) {
        OpenedFile input(countingBytes(60'000), stated);
        for (std::int64_t position = 0; position < 60'000; position += 6'000) {
            input.check(position, 6'000);
        }
        EXPECT_THAT(readBytes(*input, 1), IsEmpty());
    }
}

TEST(InputFile, ReadsAllOfAFileThatIsSmallerThanStated) {
    OpenedFile input(countingBytes(100), 1'000'000);
    input.check(0, 60);
    EXPECT_EQ(readBytes(*input, 41).size(), 40U);
    EXPECT_EQ(input->position(), 100);
    EXPECT_THAT(readBytes(*input, 50'000), IsEmpty());
    ASSERT_TRUE(input->seek(10));
    input.check(10, 90);
}

TEST(InputFile, ReadsWhatWasAppendedAfterItReachedTheEnd) {
    OpenedFile input(bytesOf("kiln"));
    EXPECT_EQ(readBytes(*input, 9), bytesOf("kiln"));
    input.file().put(4, bytesOf(" log"));
    EXPECT_EQ(readBytes(*input, 9), bytesOf(" log"));
    EXPECT_EQ(input->position(), 8);
    ASSERT_TRUE(input->seek(2));
    EXPECT_EQ(readBytes(*input, 4), bytesOf("ln l"));
}

TEST(InputFile, ReadsNothingPastTheNewEndOfATruncatedFile) {
    OpenedFile input(countingBytes(60'000));
    input.check(0, 1);
    input.file().replace(countingBytes(100));
    ASSERT_TRUE(input->seek(50'000));
    EXPECT_THAT(readBytes(*input, 4), IsEmpty());
    EXPECT_EQ(input->position(), 50'000);
    ASSERT_TRUE(input->seek(90));
    input.check(90, 10);
    EXPECT_THAT(readBytes(*input, 4), IsEmpty());
}

TEST(InputFile, ReadsNearTheEndOfAFileOfManyGigabytes) {
    const MemoryFile file({});
    file.put(5'000'000'000, bytesOf("kiln"));
    InputFile input;
    ASSERT_TRUE(input.open(file.name().c_str(), 5'000'000'004));
    ASSERT_TRUE(input.seek(5'000'000'002));
    EXPECT_EQ(readBytes(input, 4), bytesOf("ln"));
    ASSERT_TRUE(input.skip(-4));
    EXPECT_EQ(readBytes(input, 4), bytesOf("kiln"));
    EXPECT_EQ(input.position(), 5'000'000'004);
}

TEST(UnseekableInput, HasNoPositionAndRejectsEverySeek) {
    const UnseekableFile file;
    file.feed(bytesOf("kiln"));
    InputFile input;
    ASSERT_TRUE(input.open(file.name().c_str(), 0));
    EXPECT_EQ(input.position(), -1);
    EXPECT_FALSE(input.seek(0));
    EXPECT_FALSE(input.skip(0));
    EXPECT_EQ(readBytes(input, 2), bytesOf("ki"));
    EXPECT_EQ(input.position(), -1);
    for (const std::int64_t position : {-1, 0, 2}) {
        EXPECT_FALSE(input.seek(position));
        EXPECT_FALSE(input.skip(position));
    }
    EXPECT_EQ(readBytes(input, 2), bytesOf("ln"));
}

TEST(UnseekableInput, IsReadWithoutWaitingForMoreThanWasRequested) {
    const UnseekableFile file;
    InputFile input;
    ASSERT_TRUE(input.open(file.name().c_str(), 0));
    // A read that requested one byte more would never return.
    for (const std::size_t count : {1U, 2U, 7U, 300U, 16'384U, 20'000U, 1U}) {
        file.feed(countingBytes(count));
        EXPECT_EQ(readBytes(input, count), countingBytes(count));
    }
}

TEST(UnseekableInput, ReturnsWholeItemsUpToItsEnd) {
    PacedFile file;
    file.feed(bytesOf("kiln log"));
    file.end();
    InputFile input;
    ASSERT_TRUE(input.open(file.name().c_str(), 0));
    Bytes items(12);
    EXPECT_EQ(input.read(items.data(), 3, 4), 2U);
    items.resize(6);
    EXPECT_EQ(items, bytesOf("kiln l"));
    EXPECT_THAT(readBytes(input, 1), IsEmpty());
}

TEST(InputFile, HasAStreamOnlyWhileItIsOpen) {
    InputFile input;
    EXPECT_EQ(input.stream(), nullptr);
    EXPECT_TRUE(input.close());
    const MemoryFile file(bytesOf("kiln"));
    ASSERT_TRUE(input.open(file.name().c_str(), 4));
    EXPECT_NE(input.stream(), nullptr);
    EXPECT_TRUE(input.close());
    EXPECT_EQ(input.stream(), nullptr);
    EXPECT_TRUE(input.close());
}

TEST(InputFile, KeepsNothingOfThePreviousFile) {
    OpenedFile input(countingBytes(60'000));
    ASSERT_TRUE(input->seek(40'000));
    input.check(40'000, 10);
    ASSERT_TRUE(input->close());
    const MemoryFile other(bytesOf("kiln"));
    ASSERT_TRUE(input->open(other.name().c_str(), 4));
    EXPECT_EQ(input->position(), 0);
    EXPECT_EQ(readBytes(*input, 9), bytesOf("kiln"));
    EXPECT_EQ(input->position(), 4);
}

TEST(InputFile, ReportsAFileThatCannotBeOpened) {
    InputFile input;
    EXPECT_FALSE(input.open("/nonexistent/kiln.tif", 4));
    EXPECT_EQ(input.stream(), nullptr);
}

TEST(InputFile, ReportsAFileThatCannotBeClosed) {
    OpenedFile input(bytesOf("kiln"));
    close(fileno(input->stream()));
    EXPECT_FALSE(input->close());
    EXPECT_EQ(input->stream(), nullptr);
    EXPECT_TRUE(input->close());
}

TEST(InputFile, ClosesItsFileWhenDestroyed) {
    const MemoryFile file(bytesOf("kiln"));
    int descriptor = -1;
    {
        InputFile input;
        ASSERT_TRUE(input.open(file.name().c_str(), 4));
        descriptor = fileno(input.stream());
        ASSERT_NE(fcntl(descriptor, F_GETFD), -1);
    }
    EXPECT_EQ(fcntl(descriptor, F_GETFD), -1);
    EXPECT_EQ(errno, EBADF);
}

}  // namespace

}  // namespace veltrace::test
