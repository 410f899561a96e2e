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

    Reader& operator*() { return reader_; }
    Reader* operator->() { return &reader_; }

private:
    MemoryFile file_;
    Reader reader_;
};

const Bytes kEight{1, 2, 3, 4, 5, 6, 7, 8};

constexpr std::uint64_t kFilled = 0xAAAA'AAAA'BBBB'BBBB;

using ReadNumber = std::size_t (TagFile::*)(std::uint64_t*);

/// Reads the number at the start of `content`, which has `bytes` bytes.
template <class Reader>
void expectNumber(ReadNumber read, Encoding encoding, const Bytes& content, std::uint64_t expected,
                  std::int64_t bytes) {
    AtContent<Reader> reader(encoding.order, encoding.flavour, content);
    const std::int64_t before = reader->position();
    std::uint64_t number = kFilled;
    EXPECT_EQ((*reader.*read)(&number), 1U);
    EXPECT_EQ(number, expected);
    EXPECT_EQ(reader->position(), before + bytes);
}

template <class Reader>
void expectNoItem(ReadNumber read, Flavour flavour, const Bytes& content) {
    std::uint64_t number = 0;
    AtContent<Reader> reader(Order::little, flavour, content);
    EXPECT_EQ((*reader.*read)(&number), 0U);
}

template <class Reader>
class ClassicNumbers : public testing::Test {};
using ClassicReaders = testing::Types<ClassicTiffTagFile, JpegTagFile>;
TYPED_TEST_SUITE(ClassicNumbers, ClassicReaders);

TYPED_TEST(ClassicNumbers, CountOfTwoBytesKeepsTheHighHalf) {
    const auto count = &TagFile::readNumEntries;
    expectNumber<TypeParam>(count, {Order::little}, kEight, 0xAAAA'AAAA'0000'0201U, 2);
    expectNumber<TypeParam>(count, {Order::big}, kEight, 0xAAAA'AAAA'0000'0102U, 2);
    expectNoItem<TypeParam>(count, Flavour::classic, {1});
}

TYPED_TEST(ClassicNumbers, OffsetOfFourBytesIsWidenedWithZeros) {
    const auto offset = &TagFile::readOffset;
    expectNumber<TypeParam>(offset, {Order::little}, {1, 2, 3, 0xF4}, 0xF403'0201U, 4);
    expectNumber<TypeParam>(offset, {Order::big}, {0xF1, 2, 3, 4}, 0xF102'0304U, 4);
    expectNoItem<TypeParam>(offset, Flavour::classic, {1, 2, 3});
}

TEST(BigNumbers, CountAndOffsetHaveEightBytes) {
    for (const ReadNumber read : {&TagFile::readNumEntries, &TagFile::readOffset}) {
        expectNumber<BigTiffTagFile>(read, {Order::little, Flavour::big}, kEight + kEight,
                                     0x0807'0605'0403'0201U, 8);
        expectNumber<BigTiffTagFile>(read, {Order::big, Flavour::big}, kEight + kEight,
                                     0x0102'0304'0506'0708U, 8);
        expectNoItem<BigTiffTagFile>(read, Flavour::big, Bytes(7, 1));
    }
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
