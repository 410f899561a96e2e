// The numbers of a file, in its own byte order.
#include <array>
#include <gtest/gtest.h>

#include "support/memory_file.h"
#include "support/tiff_builder.h"
#include "tagfile/big_tiff_tag_file.h"
#include "tagfile/classic_tiff_tag_file.h"
#include "tagfile/jpeg_tag_file.h"

namespace veltrace::test {

using namespace module;

namespace {

/// A header whose first directory offset points to `content`, right after it.
Bytes withHeader(Order order, Flavour flavour, const Bytes& content) {
    return TiffBuilder(order, flavour).firstOffset(flavour == Flavour::big ? 16 : 8).bytes() +
           content;
}

/// A reader that has read the header of a file and is positioned at `content`.
template <class Reader>
class AtContent {
public:
    AtContent(Order order, Flavour flavour, const Bytes& content)
        : file_(withHeader(order, flavour, content)), reader_(file_.name().c_str()) {
        reader_.readHeader();
    }

    Reader* operator->() { return &reader_; }

private:
    MemoryFile file_;
    Reader reader_;
};

const Bytes kEight{1, 2, 3, 4, 5, 6, 7, 8};

constexpr std::uint64_t kFilled = 0xAAAA'AAAA'BBBB'BBBB;

template <class Reader>
class ClassicNumbers : public testing::Test {};
using ClassicReaders = testing::Types<ClassicTiffTagFile, JpegTagFile>;
TYPED_TEST_SUITE(ClassicNumbers, ClassicReaders);

TYPED_TEST(ClassicNumbers, CountOfTwoBytesKeepsTheHighHalf) {
    std::uint64_t count = kFilled;
    AtContent<TypeParam> little(Order::little, Flavour::classic, kEight);
    EXPECT_EQ(little->readNumEntries(&count), 1U);
    EXPECT_EQ(count, 0xAAAA'AAAA'0000'0201U);
    EXPECT_EQ(little->position(), 10);

    count = kFilled;
    AtContent<TypeParam> big(Order::big, Flavour::classic, kEight);
    EXPECT_EQ(big->readNumEntries(&count), 1U);
    EXPECT_EQ(count, 0xAAAA'AAAA'0000'0102U);
}

TYPED_TEST(ClassicNumbers, OffsetOfFourBytesIsWidenedWithZeros) {
    std::uint64_t offset = kFilled;
    AtContent<TypeParam> little(Order::little, Flavour::classic, {1, 2, 3, 0xF4});
    EXPECT_EQ(little->readOffset(&offset), 1U);
    EXPECT_EQ(offset, 0xF403'0201U);
    EXPECT_EQ(little->position(), 12);

    offset = kFilled;
    AtContent<TypeParam> big(Order::big, Flavour::classic, {0xF1, 2, 3, 4});
    EXPECT_EQ(big->readOffset(&offset), 1U);
    EXPECT_EQ(offset, 0xF102'0304U);
}

TYPED_TEST(ClassicNumbers, TruncatedNumberIsNotAnItem) {
    std::uint64_t number = 0;
    AtContent<TypeParam> shortCount(Order::little, Flavour::classic, {1});
    EXPECT_EQ(shortCount->readNumEntries(&number), 0U);
    AtContent<TypeParam> shortOffset(Order::little, Flavour::classic, {1, 2, 3});
    EXPECT_EQ(shortOffset->readOffset(&number), 0U);
}

TEST(BigNumbers, CountAndOffsetHaveEightBytes) {
    std::uint64_t number = kFilled;
    AtContent<BigTiffTagFile> little(Order::little, Flavour::big, kEight + kEight);
    EXPECT_EQ(little->readNumEntries(&number), 1U);
    EXPECT_EQ(number, 0x0807'0605'0403'0201U);
    number = kFilled;
    EXPECT_EQ(little->readOffset(&number), 1U);
    EXPECT_EQ(number, 0x0807'0605'0403'0201U);
    EXPECT_EQ(little->position(), 32);

    AtContent<BigTiffTagFile> big(Order::big, Flavour::big, kEight + kEight);
    EXPECT_EQ(big->readNumEntries(&number), 1U);
    EXPECT_EQ(number, 0x0102'0304'0506'0708U);
    number = kFilled;
    EXPECT_EQ(big->readOffset(&number), 1U);
    EXPECT_EQ(number, 0x0102'0304'0506'0708U);
}

TEST(BigNumbers, SevenBytesAreNotAnItem) {
    const Bytes seven(kEight.begin(), kEight.end() - 1);
    std::uint64_t number = 0;
    AtContent<BigTiffTagFile> count(Order::little, Flavour::big, seven);
    EXPECT_EQ(count->readNumEntries(&number), 0U);
    AtContent<BigTiffTagFile> offset(Order::little, Flavour::big, seven);
    EXPECT_EQ(offset->readOffset(&number), 0U);
}

/// Byte i is 0xA0 + i.
constexpr std::array<std::byte, 20> kRawEntry = [] {
    std::array<std::byte, 20> entry{};
    for (std::size_t i = 0; i < entry.size(); ++i) {
        entry[i] = static_cast<std::byte>(0xA0 + i);
    }
    return entry;
}();

TEST(EntryFields, Of12ByteEntriesAreWidenedWithZeros) {
    AtContent<ClassicTiffTagFile> little(Order::little, Flavour::classic, {});
    EXPECT_EQ(little->entryCountField(kRawEntry.data()), 0xA7A6'A5A4U);
    EXPECT_EQ(little->entryOffsetField(kRawEntry.data()), 0xABAA'A9A8U);
    AtContent<ClassicTiffTagFile> big(Order::big, Flavour::classic, {});
    EXPECT_EQ(big->entryCountField(kRawEntry.data()), 0xA4A5'A6A7U);
    EXPECT_EQ(big->entryOffsetField(kRawEntry.data()), 0xA8A9'AAABU);
}

// Kept: entries of BigTIFF are decoded from the same 32-bit fields.
TEST(EntryFields, Of20ByteEntriesAreDecodedFromTheSame32Bits) {
    AtContent<BigTiffTagFile> little(Order::little, Flavour::big, {});
    EXPECT_EQ(little->entryCountField(kRawEntry.data()), 0xA7A6'A5A4U);
    EXPECT_EQ(little->entryOffsetField(kRawEntry.data()), 0xABAA'A9A8U);
}

TEST(EntryFields, Of20ByteEntriesCanBeReadWith64Bits) {
    AtContent<BigTiffTagFile> little(Order::little, Flavour::big, {});
    EXPECT_EQ(little->bigEntryCountField(kRawEntry.data()), 0xABAA'A9A8'A7A6'A5A4U);
    EXPECT_EQ(little->bigEntryOffsetField(kRawEntry.data()), 0xB3B2'B1B0'AFAE'ADACU);
    AtContent<BigTiffTagFile> big(Order::big, Flavour::big, {});
    EXPECT_EQ(big->bigEntryCountField(kRawEntry.data()), 0xA4A5'A6A7'A8A9'AAABU);
    EXPECT_EQ(big->bigEntryOffsetField(kRawEntry.data()), 0xACAD'AEAF'B0B1'B2B3U);
}

}  // namespace

}  // namespace veltrace::test
