// Turns, sets and peaks, with readers that only remember.
#include "readers/rounds.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "files/generated_files.h"
#include "readers/peak.h"
#include "readers/readers.h"
#include "support/memory_file.h"

namespace veltrace::bench {

namespace {

using test::MemoryFile;
using testing::ElementsAre;
using testing::SizeIs;

class Remembering : public Reader {
public:
    Remembering(std::string name, Format format, std::string& reads)
        : name_(std::move(name)), format_(format), reads_(&reads) {}

    [[nodiscard]] std::string_view name() const override { return name_; }
    [[nodiscard]] bool knows(Format format) const override { return format == format_; }
    [[nodiscard]] Delivered count(const std::string&) override {
        *reads_ += '+';
        return {.directories = 1, .entries = 2, .values = 3, .refused = 0};
    }
    void read(const std::string&) override { *reads_ += name_; }

private:
    std::string name_;
    Format format_;
    std::string* reads_;
};

TEST(Sets, SortFilesByFormatAndLeaveOthersOut) {
    const MemoryFile page(bigPage());
    const MemoryFile picture(jpegPhotograph(Order::big, 1));
    const MemoryFile text(test::bytesOf("text"));
    const auto sets = setsOf({page.name(), text.name(), picture.name(), page.name()});
    ASSERT_THAT(sets, SizeIs(2));
    EXPECT_EQ(sets[0].name, "jpeg");
    EXPECT_THAT(sets[0].files, ElementsAre(picture.name()));
    EXPECT_EQ(sets[1].name, "bigtiff");
    EXPECT_THAT(sets[1].files, ElementsAre(page.name(), page.name()));
}

TEST(Rounds, LetReadersTakeTurnsInAnOrderThatMovesOn) {
    std::string reads;
    Readers readers;
    for (const char* name : {"a", "b", "c"}) {
        readers.push_back(std::make_unique<Remembering>(name, Format::classicTiff, reads));
    }
    const MemoryFile page(chain(1));
    FileSet set{"classic", {page.name()}, {}};
    measure(set, readers, 3, 1);
    // Each counts and warms up, then the rounds begin, with one file more that is not timed.
    EXPECT_EQ(reads,
              "+aa+bb+cc"
              "aabbcc"
              "bbccaa"
              "ccaabb");
    ASSERT_THAT(set.courses, SizeIs(3));
    EXPECT_EQ(set.courses[1].reader, "b");
    EXPECT_THAT(set.courses[1].rounds, SizeIs(3));
}

TEST(Rounds, ReadASmallSetAgainUntilTheyHaveReadEnough) {
    std::string reads;
    Readers readers;
    for (const char* name : {"a", "b"}) {
        readers.push_back(std::make_unique<Remembering>(name, Format::classicTiff, reads));
    }
    const MemoryFile page(chain(1));
    FileSet set{"classic", {page.name(), page.name()}, {}};
    measure(set, readers, 1, 5);
    EXPECT_EQ(reads,
              "++aaa++bbb"
              "aaaaaaabbbbbbb");
    const Delivered once{.directories = 2, .entries = 4, .values = 6, .refused = 0};
    EXPECT_EQ(set.courses[0].delivered, once);
}

TEST(Rounds, CountOverAllFilesAndSkipReadersOfOtherFormats) {
    std::string reads;
    Readers readers;
    readers.push_back(std::make_unique<Remembering>("a", Format::classicTiff, reads));
    readers.push_back(std::make_unique<Remembering>("b", Format::jpeg, reads));
    const MemoryFile page(chain(1));
    FileSet set{"classic", {page.name(), page.name()}, {}};
    measure(set, readers, 1, 1);
    ASSERT_THAT(set.courses, SizeIs(1));
    const Delivered twice{.directories = 2, .entries = 4, .values = 6, .refused = 0};
    EXPECT_EQ(set.courses[0].delivered, twice);
}

TEST(Peak, IsTheGrowthOfTheProcessAlsoOfMemoryThatIsGoneAgain) {
    constexpr std::size_t kCount = 4'000'000;
    const MemoryFile file(imageWithValues(ValueType::shorts, kCount, Order::little));
    const auto reader = minimalReader();
    const Peak peak = peakOf(*reader, file.name());
    // As they stand in the file, and as doubles.
    constexpr std::size_t kBytes = kCount * (2 + 8);
    EXPECT_GE(peak.bytes, kBytes * 9 / 10);
    EXPECT_LE(peak.bytes, kBytes * 11 / 10);
    EXPECT_GT(peak.nanoseconds, 0U);
}

}  // namespace

}  // namespace veltrace::bench
