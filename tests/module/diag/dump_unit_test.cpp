// The text of the dumps.
#include <bit>
#include <gtest/gtest.h>
#include <iomanip>
#include <sstream>
#include <streambuf>

#include "diag/dump.h"
#include "ifd/ifd_set.h"
#include "support/nested_file.h"
#include "support/opened_tiff.h"
#include "support/quiet_call.h"
#include "support/thrown.h"
#include "tagfile/big_tiff_tag_file.h"
#include "tagfile/jpeg_tag_file.h"

namespace veltrace::test {

using namespace module;

namespace {

const std::string kHeavy = "+==========================================================\n";
const std::string kLight = "+------------------------------------------------------------\n";

template <class Object>
std::string dump(const Object& object) {
    std::ostringstream stream;
    EXPECT_EQ(&(stream << object), &stream);
    return stream.str();
}

/// MeteringMode 5 as the only tag of an Exif directory.
const std::string kMeteringMode = kHeavy +
                                  "Tag ID 37383: MeteringMode\n"
                                  "Format:  3\n"
                                  "Num Components:  1\n"
                                  "Total Size:  2 bytes.\n"
                                  "Offset:  0\n"
                                  "Raw Numeric data: 5 \n"
                                  "Processed Numeric data: 5 \n"
                                  "Raw String data: \n" +
                                  kHeavy;

const std::string kMeteringChain = kHeavy + "There are 1 IFDs in the current set.\n" + "IFD # 0\n" +
                                   kLight + "There are 1 known tags.\n" + kMeteringMode +
                                   "There are 0 unknown tags.\n" + kLight +
                                   "\tThere are 1 unique key names in the current set.\n" + kLight +
                                   "ID: 37383 Name:MeteringMode\n" + "\n" + kLight + kHeavy;

TEST(TagDump, HasALineForEachFieldOfTheEntry) {
    inQuietCall([] {
        TiffBuilder file;
        file.image().shorts(37383, {5});
        const IFD directory = OpenedTiff<>(file).readDirectory(IfdId::exif);
        EXPECT_EQ(dump(directory.knownTags()[0]), kMeteringMode);
    });
}

TEST(TagDump, OfATextHasItsRawBytesAndNoNumbersAfterTheColons) {
    inQuietCall([] {
        TiffBuilder file;
        file.image().rawAscii(305, std::string_view("kiln\0\x1b\0", 7));
        const IFD directory = OpenedTiff<>(file).readDirectory(IfdId::exif);
        EXPECT_EQ(dump(directory.knownTags()[0]),
                  kHeavy +
                      "Tag ID 305: Software\n"
                      "Format:  2\n"
                      "Num Components:  7\n"
                      "Total Size:  7 bytes.\n"
                      "Offset:  26\n"
                      "Raw Numeric data: \n"
                      "Processed Numeric data: \n" +
                      std::string("Raw String data: kiln\0\x1b\0\n", 25) + kHeavy);
    });
}

TEST(TagDump, WritesAThirdWithEightSignificantDigits) {
    inQuietCall([] {
        TiffBuilder file;
        file.image().rationals(33434, {{1, 3}, {123'456'789, 10}});
        const IFD directory = OpenedTiff<>(file).readDirectory(IfdId::exif);
        EXPECT_EQ(dump(directory.knownTags()[0]),
                  kHeavy +
                      "Tag ID 33434: ExposureTime\n"
                      "Format:  5\n"
                      "Num Components:  2\n"
                      "Total Size:  16 bytes.\n"
                      "Offset:  26\n"
                      "Raw Numeric data: 1 3 1.2345679e+08 10 \n"
                      "Processed Numeric data: 0.33333333 12345679 \n"
                      "Raw String data: \n" +
                      kHeavy);
    });
}

TEST(TagDump, OfAnUnknownTagHasNoName) {
    inQuietCall([] {
        TiffBuilder file;
        file.image().longs(60'000, {7, 4'000'000'000});
        const IFD directory = OpenedTiff<>(file).readDirectory(IfdId::exif);
        EXPECT_EQ(dump(directory.unknownTags()[0]), kHeavy +
                                                        "Tag ID 60000: \n"
                                                        "Format:  4\n"
                                                        "Num Components:  2\n"
                                                        "Total Size:  8 bytes.\n"
                                                        "Offset:  26\n"
                                                        "Raw Numeric data: 7 4e+09 \n"
                                                        "Processed Numeric data: 7 4e+09 \n"
                                                        "Raw String data: \n" +
                                                        kHeavy);
    });
}

TEST(TagDump, LeavesOutTheOutputText) {
    inQuietCall([] {
        TiffBuilder file;
        file.image().shorts(259, {1});  // Compression, reported as a word
        const IFDSet chain(*OpenedTiff<>(file), IfdId::image);
        const auto& tags = chain.directories().at(0).knownTags();
        ASSERT_EQ(tags[0].tagId(), 259);
        ASSERT_EQ(tags[0].outputText(), "Uncompressed");
        EXPECT_EQ(dump(tags[0]).find("Uncompressed"), std::string::npos);
    });
}

TEST(TagDump, RestoresTheFormatFlagsButNotThePrecision) {
    inQuietCall([] {
        TiffBuilder file;
        file.image().shorts(37383, {5});
        const IFD directory = OpenedTiff<>(file).readDirectory(IfdId::exif);
        std::ostringstream stream;
        stream << std::hex << std::showbase << std::scientific << std::setprecision(3);
        const auto flags = stream.flags();
        stream << directory.knownTags()[0];
        EXPECT_EQ(stream.str(), kMeteringMode) << "decimal, for any flags of the stream";
        EXPECT_EQ(stream.flags(), flags);
        EXPECT_EQ(stream.precision(), 8);
    });
}

TEST(TagDump, OfAnExifPointerContainsTheWholeDirectorySetBeforeItsClosingRule) {
    inQuietCall([] {
        TiffBuilder file;
        file.image().sub(34665, file.child().shorts(37383, {5}));
        const IFD directory = OpenedTiff<>(file).readDirectory(IfdId::exif);
        EXPECT_EQ(dump(directory.knownTags()[0]), kHeavy +
                                                      "Tag ID 34665: DigitalCamera\n"
                                                      "Format:  4\n"
                                                      "Num Components:  1\n"
                                                      "Total Size:  4 bytes.\n"
                                                      "Offset:  26\n"
                                                      "Raw Numeric data: \n"
                                                      "Processed Numeric data: \n"
                                                      "Raw String data: \n" +
                                                      kMeteringChain + kHeavy);
    });
}

TEST(DirectoryDump, HasKnownTagsThenUnknownOnesInStoredOrder) {
    inQuietCall([] {
        TiffBuilder file;
        file.image().shorts(60'001, {1}).shorts(37383, {5}).shorts(60'000, {2});
        const IFD directory = OpenedTiff<>(file).readDirectory(IfdId::exif);
        const auto& unknown = directory.unknownTags();
        ASSERT_EQ(unknown.size(), 2U);
        ASSERT_EQ(unknown[0].tagId(), 60'001);
        EXPECT_EQ(dump(directory), kLight + "There are 1 known tags.\n" + kMeteringMode +
                                       "There are 2 unknown tags.\n" + dump(unknown[0]) +
                                       dump(unknown[1]) + kLight);
    });
}

TEST(DirectoryDump, WithoutUnknownTagsHasTheCountOf0AndTheClosingRule) {
    inQuietCall([] {
        TiffBuilder file;
        file.image().shorts(37383, {5});
        const IFD directory = OpenedTiff<>(file).readDirectory(IfdId::exif);
        EXPECT_EQ(dump(directory), kLight + "There are 1 known tags.\n" + kMeteringMode +
                                       "There are 0 unknown tags.\n" + kLight);
    });
}

TEST(SetDump, HasItsDirectoriesAndItsFieldNamesInAscendingOrder) {
    inQuietCall([] {
        TiffBuilder file;
        file.image().shorts(37383, {5}).shorts(33434, {1});
        const IFDSet chain(*OpenedTiff<>(file), IfdId::exif);
        EXPECT_EQ(dump(chain), kHeavy + "There are 1 IFDs in the current set.\n" + "IFD # 0\n" +
                                   dump(chain.directories()[0]) +
                                   "\tThere are 2 unique key names in the current set.\n" + kLight +
                                   "ID: 33434 Name:ExposureTime\n" +
                                   "ID: 37383 Name:MeteringMode\n" + "\n" + kLight + kHeavy);
    });
}

TEST(SetDump, CountsDirectoriesFrom0) {
    inQuietCall([] {
        TiffBuilder file;
        file.image().shorts(256, {1});
        file.addImage().ascii(305, "kiln");
        const IFDSet chain(*OpenedTiff<>(file), IfdId::image);
        const auto& directories = chain.directories();
        ASSERT_EQ(directories.size(), 2U);
        const std::string start =
            kHeavy + "There are 2 IFDs in the current set.\n" + "IFD # 0\n" + dump(directories[0]) +
            "IFD # 1\n" + dump(directories[1]) +
            "\tThere are 23 unique key names in the current set.\n";  // 22 fallbacks and Software
        EXPECT_EQ(dump(chain).substr(0, start.size()), start);
    });
}

TEST(SetDump, OfAnEmptySetHasNoDirectoryAndNoName) {
    EXPECT_EQ(dump(IFDSet()), kHeavy + "There are 0 IFDs in the current set.\n" +
                                  "\tThere are 0 unique key names in the current set.\n" + kLight +
                                  "\n" + kLight + kHeavy);
}

std::string computerEndianFormat() {
    return std::endian::native == std::endian::big ? "Big Endian" : "Little Endian";
}

TEST(FileDump, ContainsTheDirectorySetOfAReadFile) {
    inQuietCall([] {
        TiffBuilder tiff;
        tiff.image().shorts(37383, {5});
        tiff.image().sub(34665, tiff.child().shorts(37383, {5}));
        const MemoryFile file(jpegWithExif(tiff.bytes()));
        JpegTagFile reader(file.name().c_str());
        reader.readAll();
        ASSERT_TRUE(reader.seek(7));
        // 14 bytes of JPEG, header 8, a directory with two entries 30, one with one entry 18.
        EXPECT_EQ(dump<TagFile>(reader), kHeavy + "TagFile:  filename ==> " + file.name() + "\n" +
                                             "\tFile pos ==> 7\n"
                                             "\tFile size ==> 70 bytes.\n"
                                             "\tTiff Header Offset Base ==> 12\n"
                                             "\tTiff Header Endian Format ==> Little Endian\n"
                                             "\tComputer Endian Format ==> " +
                                             computerEndianFormat() + "\n" +
                                             dump(*reader.ifdSet()) + kHeavy + "\n\n");
    });
}

TEST(FileDump, ReportsThatNothingIsInitializedBeforeTheRead) {
    inQuietCall([] {
        const MemoryFile file({'I', 'I', 42, 0});
        const ClassicTiffTagFile reader(file.name().c_str());
        EXPECT_EQ(dump<TagFile>(reader),
                  kHeavy + "TagFile:  filename ==> " + file.name() + "\n" +
                      "\tFile pos ==> 0\n"
                      "\tFile size ==> 4 bytes.\n"
                      "\tTiff Header Offset Base ==> 0\n"
                      "\tTiff Header Endian Format ==> unknown???\n"
                      "\tComputer Endian Format ==> " +
                      computerEndianFormat() +
                      "\n"
                      "The IFD data structures have not yet been initialized. \n" +
                      kHeavy + "\n\n");
    });
}

/// The line of a reader's dump that begins with `label`, without the label.
std::string rowOf(const TagFile& reader, const std::string& label) {
    const std::string text = dump(reader);
    const std::size_t start = text.find(label);
    EXPECT_NE(start, std::string::npos);
    return text.substr(start + label.size(), text.find('\n', start) - start - label.size());
}

TEST(FileDump, NamesTheByteOrderOfTheHeader) {
    inQuietCall([] {
        TiffBuilder big(Order::big);
        big.image().shorts(256, {1});
        EXPECT_EQ(rowOf(*OpenedTiff<>(big), "\tTiff Header Endian Format ==> "), "Big Endian");
        TiffBuilder little(Order::little);
        little.image().shorts(256, {1});
        EXPECT_EQ(rowOf(*OpenedTiff<>(little), "\tTiff Header Endian Format ==> "),
                  "Little Endian");
    });
}

TEST(FileDump, ShowsTheHeaderAfterAFailedRead) {
    inQuietCall([] {
        const MemoryFile file({'I', 'M', 42, 0, 8, 0, 0, 0});
        ClassicTiffTagFile reader(file.name().c_str());
        EXPECT_THROW(reader.readAll(), VeltraceFatalError);
        EXPECT_EQ(rowOf(reader, "\tTiff Header Endian Format ==> "), "unknown???");
        EXPECT_EQ(rowOf(reader, "\tFile pos ==> "), "2");
    });
}

TEST(FileDump, ShowsThePositionInUnsigned32Bits) {
    inQuietCall([] {
        const MemoryFile file({'I', 'I', 42, 0});
        ClassicTiffTagFile reader(file.name().c_str());
        ASSERT_TRUE(reader.seek(0xFFFF'FFFF));
        EXPECT_EQ(rowOf(reader, "\tFile pos ==> "), "4294967295");
        ASSERT_TRUE(reader.seek(0x1'0000'0007));
        EXPECT_EQ(rowOf(reader, "\tFile pos ==> "), "7");
    });
}

TEST(FileDump, ContainsEveryDirectoryOfABigTiffFile) {
    inQuietCall([] {
        TiffBuilder file(Order::little, Flavour::big);
        file.image().shorts(256, {1});
        file.addImage().shorts(256, {2});
        const MemoryFile stored(file.bytes());
        BigTiffTagFile reader(stored.name().c_str());
        reader.readAll();
        EXPECT_NE(dump<TagFile>(reader).find(dump(*reader.ifdSet())), std::string::npos);
        EXPECT_EQ(reader.ifdSet()->getNumIfds(), 2U);
    });
}

/// Counts the characters written to it.
class Counter : public std::streambuf {
public:
    [[nodiscard]] std::size_t count() const { return count_; }

private:
    int_type overflow(int_type character) override {
        ++count_;
        return traits_type::not_eof(character);
    }
    std::streamsize xsputn(const char* /*text*/, std::streamsize size) override {
        count_ += static_cast<std::size_t>(size);
        return size;
    }
    std::size_t count_ = 0;
};

/// Characters in the dump of a file of this depth; 0 if the stack is too small.
std::size_t dumpedCharacters(std::size_t depth) {
    const MemoryFile file(nestedExif(depth));
    ClassicTiffTagFile reader(file.name().c_str());
    try {
        reader.readAll();
    } catch (const StackExhausted&) {
        return 0;
    }
    Counter counter;
    std::ostream(&counter) << reader;
    return counter.count();
}

// A dump goes as deep as the read did, so it must not need more stack per level.
TEST(FileDump, OfTheDeepestReadableFileFitsTheStack) {
    runOnStack(std::size_t{1} << 20, [] {
        inQuietCall([] {
            std::size_t depth = 1;
            std::size_t characters = 0;
            while (const std::size_t deeper = dumpedCharacters(depth)) {
                EXPECT_GT(deeper, characters);
                characters = deeper;
                depth += 1 + depth / 32;
            }
            EXPECT_GT(depth, 100U);
        });
    });
}

}  // namespace

}  // namespace veltrace::test
