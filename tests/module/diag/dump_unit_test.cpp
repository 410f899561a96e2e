// Whole dumps, every letter of them written out.
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "diag/dump.h"
#include "entry/errors.h"
#include "ifd/ifd_set.h"
#include "support/opened_tiff.h"
#include "support/quiet_call.h"
#include "tagfile/big_tiff_tag_file.h"
#include "tagfile/jpeg_tag_file.h"

namespace veltrace::test {

using namespace module;

namespace {

using namespace std::string_literals;

const std::string kHeavy = "+==========================================================\n";
const std::string kLight = "+------------------------------------------------------------\n";

struct TagText {
    std::string idAndName;
    std::string format, count, size, offset;
    std::string raw, processed, text;
    std::string subDirectory;
};

std::string written(const TagText& tag) {
    return kHeavy + "Tag ID " + tag.idAndName + "\nFormat:  " + tag.format +
           "\nNum Components:  " + tag.count + "\nTotal Size:  " + tag.size +
           " bytes.\nOffset:  " + tag.offset + "\nRaw Numeric data: " + tag.raw +
           "\nProcessed Numeric data: " + tag.processed + "\nRaw String data: " + tag.text + "\n" +
           tag.subDirectory + kHeavy;
}

/// A pointer tag (LONG, count 1) and what it points to.
std::string pointer(const std::string& idAndName, const std::string& offset,
                    const std::string& subDirectory) {
    return written({idAndName, "4", "1", "4", offset, "", "", "", subDirectory});
}

/// An unknown tag whose numbers are reported as they are.
std::string unknownTag(const std::string& id, const std::string& format, const std::string& count,
                       const std::string& size, const std::string& numbers) {
    return written({id + ": ", format, count, size, "0", numbers, numbers, "", ""});
}

std::string fallback(const std::string& idAndName, const std::string& processed,
                     const std::string& count = "0") {
    return written({idAndName, "0", count, "0", "0", "", processed, "", ""});
}

std::string directory(const std::string& knownCount, const std::string& knownTags,
                      const std::string& unknownCount = "0", const std::string& unknownTags = "") {
    return kLight + "There are " + knownCount + " known tags.\n" + knownTags + "There are " +
           unknownCount + " unknown tags.\n" + unknownTags + kLight;
}

std::string chain(const std::string& count, const std::string& directories,
                  const std::string& nameCount, const std::string& names) {
    return kHeavy + "There are " + count + " IFDs in the current set.\n" + directories +
           "\tThere are " + nameCount + " unique key names in the current set.\n" + kLight + names +
           "\n" + kLight + kHeavy;
}

std::string chainOf1(const std::string& onlyDirectory, const std::string& name) {
    return chain("1", "IFD # 0\n" + onlyDirectory, "1", "ID: " + name + "\n");
}

/// On the little-endian computers that the tests run on.
std::string file(const std::string& name, const std::string& position, const std::string& size,
                 const std::string& base, const std::string& byteOrder, const std::string& chain) {
    return kHeavy + "TagFile:  filename ==> " + name + "\n\tFile pos ==> " + position +
           "\n\tFile size ==> " + size + " bytes.\n\tTiff Header Offset Base ==> " + base +
           "\n\tTiff Header Endian Format ==> " + byteOrder +
           "\n\tComputer Endian Format ==> Little Endian\n" + chain + kHeavy + "\n\n";
}

template <class Object>
std::string dumpOf(const Object& object) {
    std::ostringstream stream;
    EXPECT_EQ(&(stream << object), &stream);
    return stream.str();
}

/// The dump of a directory that a classic reader found at its position.
std::string dumpOfDirectory(const TiffBuilder& builder) {
    std::string text;
    inQuietCall([&] { text = dumpOf(OpenedTiff<>(builder).readDirectory(IfdId::exif)); });
    return text;
}

/// The dump of a file that was read, with FILE instead of its name.
template <class Reader>
std::string dumpOfFile(const MemoryFile& memory) {
    Reader reader(memory.name().c_str());
    inQuietCall([&reader] { reader.readAll(); });
    std::string text = dumpOf<TagFile>(reader);
    return text.replace(text.find(memory.name()), memory.name().size(), "FILE");
}

struct Fallback {
    std::string id, name, processed, count = "0";
};

/// The tags that an image directory is given besides XResolution.
const std::vector<Fallback> kFallbacks{{"254", "NewSubFileType", "0 "},
                                       {"258", "BitsPerSample", "1 "},
                                       {"259", "Compression", "1 "},
                                       {"263", "Thresholding", "1 "},
                                       {"266", "FillOrder", "1 "},
                                       {"273", "StripOffsets", ""},
                                       {"274", "Orientation", "1 "},
                                       {"277", "SamplesPerPixel", "1 "},
                                       {"278", "RowsPerStrip", "4.2949673e+09 "},
                                       {"279", "StripByteCounts", ""},
                                       {"280", "MinSampleValue", "0 "},
                                       {"281", "MaxSampleValue", "1 ", "1"},
                                       {"283", "YResolution", ""},
                                       {"284", "PlanarConfiguration", "1 "},
                                       {"290", "GrayResponseUnit", "0.01 "},
                                       {"296", "ResolutionUnit", "1 "},
                                       {"320", "Colormap", ""},
                                       {"322", "TileWidth", ""},
                                       {"323", "TileLength", ""},
                                       {"324", "TileOffsets", ""},
                                       {"325", "TileByteCounts", ""}};

TEST(FileDump, OfAnImageFileHasInEachDirectoryItsTagsThenItsFallbacks) {
    std::string fallbacks;
    std::map<int, std::string> names{{282, "XResolution"}, {700, "XMP"}};
    for (const auto& [id, name, processed, count] : kFallbacks) {
        fallbacks += fallback(id + ": " + name, processed, count);
        names[std::stoi(id)] = name;
    }
    std::string nameLines;
    for (const auto& [id, name] : names) {
        nameLines += "ID: " + std::to_string(id) + " Name:" + name + "\n";
    }
    const std::string first =
        written({"282: XResolution", "5", "1", "8", "0", "1 3 ", "0.33333333 ", "", ""});
    // Behind tables of 8 + 60 + 8 bytes at 16 and 8 + 40 + 8 at 92.
    const std::string second = written({"282: XResolution", "10", "2", "16", "148", "-1 3 2 3 ",
                                        "-0.33333333 0.66666667 ", "", ""}) +
                               written({"700: XMP", "2", "2", "2", "0", "", "", "a\n", ""});
    const std::string unknown =
        unknownTag("65001", "3", "2", "4", "7 8 ") + unknownTag("65000", "3", "1", "2", "6 ");
    const std::string directories = "IFD # 0\n" + directory("22", first + fallbacks, "2", unknown) +
                                    "IFD # 1\n" + directory("23", second + fallbacks);
    EXPECT_EQ(
        dumpOfFile<BigTiffTagFile>(MemoryFile(
            tiffOf({Order::big, Flavour::big},
                   Dir().shorts(65001, {7, 8}).rationals(282, {{1, 3}}).shorts(65000, {6}),
                   Dir().signedRationals(282, {{-1, 3}, {2, 3}}).rawAscii(700, "a\n")))),
        file("FILE", "148", "164", "0", "Big Endian", chain("2", directories, "23", nameLines)));
}

TEST(FileDump, OfAJpegFileHasEveryNestedDirectory) {
    TiffBuilder tiff;
    TiffDirectory& exif = tiff.child();
    TiffDirectory& gps = tiff.child();
    TiffDirectory& interoperability = tiff.child();
    tiff.image().sub(34853, gps).sub(34665, exif);
    exif.sub(40965, interoperability);
    gps.bytes(0, {2, 3, 0, 0}).shorts(31, {9});
    interoperability.ascii(1, "R98");

    // From the header: image 8 + 30, Exif 38 + 18, GPS 56 + 30, Interoperability 86 + 18.
    const std::string interoperabilityChain = chainOf1(
        directory("1",
                  written({"1: InteroperabilityIndex", "2", "4", "4", "0", "", "", "R98\0"s, ""})),
        "1 Name:InteroperabilityIndex");
    const std::string exifChain =
        chainOf1(directory("1", pointer("40965: InteroperabilityIFD", "86", interoperabilityChain)),
                 "40965 Name:InteroperabilityIFD");
    const std::string gpsChain = chainOf1(
        directory("1",
                  written({"0: GPSVersionID", "1", "4", "4", "0", "2 3 0 0 ", "2 3 0 0 ", "", ""}),
                  "1", unknownTag("31", "3", "1", "2", "9 ")),
        "0 Name:GPSVersionID");
    const std::string image = directory("2", pointer("34853: GPSInfo", "56", gpsChain) +
                                                 pointer("34665: DigitalCamera", "38", exifChain));
    const std::string names = "ID: 34665 Name:DigitalCamera\nID: 34853 Name:GPSInfo\n";
    // The stream stays behind the table of the image directory: 12 + 8 + 2 + 24.
    EXPECT_EQ(dumpOfFile<JpegTagFile>(MemoryFile(jpegWithExif(tiff.bytes()))),
              file("FILE", "46", "118", "12", "Little Endian",
                   chain("1", "IFD # 0\n" + image, "2", names)));
}

/// Of a reader whose header has no byte order, or has not been read.
std::string unreadFile(const std::string& name, const std::string& position,
                       const std::string& size) {
    return file(name, position, size, "0", "unknown???",
                "The IFD data structures have not yet been initialized. \n");
}

TEST(FileDump, OfAJpegFileWithoutExifHasNoDirectories) {
    EXPECT_EQ(dumpOfFile<JpegTagFile>(MemoryFile(Bytes{0xFF, 0xD8, 0xFF, 0xDB, 0, 2, 7})),
              unreadFile("FILE", "6", "7"));
}

TEST(FileDump, AfterAFailedReadHasTheMarkAndThePosition) {
    const MemoryFile memory({'I', 'M', 42, 0, 8, 0, 0, 0});
    ClassicTiffTagFile reader(memory.name().c_str());
    EXPECT_THROW(reader.readAll(), VeltraceFatalError);
    EXPECT_EQ(dumpOf<TagFile>(reader), unreadFile(memory.name(), "2", "8"));
}

TEST(FileDump, BeforeReadingHasTheSizeAndThePositionInUnsigned32Bits) {
    const MemoryFile sparse(bytesOf("II"));
    sparse.put(5'000'000'000, Bytes{0});
    ClassicTiffTagFile reader(sparse.name().c_str());
    EXPECT_EQ(dumpOf<TagFile>(reader), unreadFile(sparse.name(), "0", "5000000001"));
    ASSERT_TRUE(reader.seek(0xFFFF'FFFF));
    EXPECT_EQ(dumpOf<TagFile>(reader), unreadFile(sparse.name(), "4294967295", "5000000001"));
    ASSERT_TRUE(reader.seek(0x1'0000'0007));
    EXPECT_EQ(dumpOf<TagFile>(reader), unreadFile(sparse.name(), "7", "5000000001"));
}

TEST(SetDump, OfNothingHasNoDirectoryAndNoName) {
    EXPECT_EQ(dumpOf(IFDSet()), chain("0", "", "0", ""));
    EXPECT_EQ(dumpOf(IFD()), directory("0", ""));
}

TEST(DirectoryDump, HasTheNumbersOfEveryDataType) {
    TiffBuilder tiff;
    tiff.image()
        .bytes(50001, {0, 255})
        .rawAscii(50002, "a\0\x1b"s)
        .shorts(50003, {65535})
        .longs(50004, {4'294'967'295})
        .rationals(50005, {{4'294'967'295, 2}})
        .signedBytes(50006, {-128, 127})
        .undefined(50007, {200})
        .signedShorts(50008, {-32768})
        .signedLongs(50009, {-99'999'999})
        .signedRationals(50010, {{1, -8}})
        .floats(50011, {0.1F})
        .doubles(50012, {1e-5, 123456.789, 2.0 / 3});
    // Values outside the entries begin at 8 + 2 + 12 * 12 + 4.
    const std::string tags =
        unknownTag("50001", "1", "2", "2", "0 255 ") +
        written({"50002: ", "2", "3", "3", "0", "", "", "a\0\x1b"s, ""}) +
        unknownTag("50003", "3", "1", "2", "65535 ") +
        unknownTag("50004", "4", "1", "4", "4.2949673e+09 ") +
        written({"50005: ", "5", "1", "8", "158", "4.2949673e+09 2 ", "2.1474836e+09 ", "", ""}) +
        unknownTag("50006", "6", "2", "2", "-128 127 ") +
        unknownTag("50007", "7", "1", "1", "200 ") + unknownTag("50008", "8", "1", "2", "-32768 ") +
        unknownTag("50009", "9", "1", "4", "-99999999 ") +
        written({"50010: ", "10", "1", "8", "166", "1 -8 ", "-0.125 ", "", ""}) +
        unknownTag("50011", "11", "1", "4", "0.1 ") +
        written({"50012: ", "12", "3", "24", "174", "1e-05 123456.79 0.66666667 ",
                 "1e-05 123456.79 0.66666667 ", "", ""});
    EXPECT_EQ(dumpOfDirectory(tiff), directory("0", "", "12", tags));
}

TEST(DirectoryDump, HasInterpretedNumbersAndTextsButNoWords) {
    const Bytes tiff = tiffOf(Dir()
                                  .ascii(270, "abc")
                                  .shorts(296, {2})
                                  .rationals(282, {{1, 0}, {3, 2}})
                                  .undefined(34675, {1, 2, 3, 4, 5}));
    // Values outside the entries begin at 8 + 2 + 4 * 12 + 4.
    const std::string tags =
        written({"270: ImageDescription", "2", "4", "4", "0", "", "", "abc", ""}) +
        written({"296: ResolutionUnit", "3", "1", "2", "0", "2 ", "2 ", "", ""}) +
        written({"282: XResolution", "5", "2", "16", "62", "1 0 3 2 ", "nan 1.5 ", "", ""}) +
        written({"34675: ICCProfileOffset", "7", "5", "5", "78", "1 2 3 4 5 ", "78 ", "", ""});
    const auto call = inCall([&] {
        EXPECT_EQ(dumpOf(OpenedTiff<>(tiff).readDirectory(IfdId::exif)), directory("4", tags));
    });
    EXPECT_EQ(call.warnings().size(), 1U) << "of the division by zero";
}

TEST(DirectoryDump, HasTypeAndCountOfAPointerAsTheEntryStatesThem) {
    TiffBuilder tiff;
    tiff.image().entryAt(330, 13, 2, 26);
    tiff.child().shorts(305, {1});  // behind the one entry, at 8 + 2 + 12 + 4
    const std::string software = written({"305: Software", "3", "1", "2", "0", "1 ", "1 ", "", ""});
    const std::string inner = chainOf1(directory("1", software), "305 Name:Software");
    inQuietCall([&] {
        OpenedTiff<JpegTagFile> jpeg(tiff);  // which has no fallbacks
        EXPECT_EQ(
            dumpOf(jpeg.readDirectory()),
            directory("1", written({"330: SubIFDs", "13", "2", "8", "26", "", "", "", inner})));
    });
}

TEST(DirectoryDump, HasAnOffsetBeyond2Gigabytes) {
    const MemoryFile memory(tiffOf(Dir().entryAt(37510, 1, 5, 3'000'000'000)));
    memory.put(3'000'000'000, bytesOf("ember"));
    const std::string numbers = "101 109 98 101 114 ";
    inQuietCall([&] {
        ClassicTiffTagFile reader(memory.name().c_str());
        reader.readHeader();
        EXPECT_EQ(dumpOf(IFDSet(reader, IfdId::exif)),
                  chainOf1(directory("1", written({"37510: UserComment", "1", "5", "5",
                                                   "3000000000", numbers, numbers, "", ""})),
                           "37510 Name:UserComment"));
    });
}

TEST(TagDump, OfAFallbackHasANumberForEachSample) {
    EXPECT_EQ(dumpOf(TiffTag(258, IfdId::image, 3U)), fallback("258: BitsPerSample", "1 1 1 "));
    EXPECT_EQ(dumpOf(TiffTag(281, IfdId::image, std::vector<double>{8, 16, 32})),
              fallback("281: MaxSampleValue", "255 65535 4.2949673e+09 ", "3"));
}

}  // namespace

}  // namespace veltrace::test
