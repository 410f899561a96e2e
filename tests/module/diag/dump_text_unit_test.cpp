// The full text of whole dumps.
#include <gtest/gtest.h>
#include <sstream>
#include <string>

#include "diag/dump.h"
#include "ifd/ifd_set.h"
#include "support/memory_file.h"
#include "support/module_run.h"
#include "support/quiet_call.h"
#include "support/tiff_builder.h"
#include "tagfile/big_tiff_tag_file.h"
#include "tagfile/classic_tiff_tag_file.h"
#include "tagfile/jpeg_tag_file.h"

namespace veltrace::test {

using namespace module;

namespace {

using namespace std::string_literals;

const std::string kHeavy = "+==========================================================\n";
const std::string kLight = "+------------------------------------------------------------\n";

template <class Object>
std::string dumpOf(const Object& object) {
    std::ostringstream stream;
    stream << object;
    return stream.str();
}

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

/// A fallback tag.
std::string fallback(const std::string& idAndName, const std::string& processed,
                     const std::string& count = "0") {
    return written({idAndName, "0", count, "0", "0", "", processed, "", ""});
}

/// A pointer tag (LONG, count 1) and what it points to.
std::string pointer(const std::string& idAndName, const std::string& offset,
                    const std::string& subDirectory) {
    return written({idAndName, "4", "1", "4", offset, "", "", "", subDirectory});
}

std::string directory(const std::string& knownCount, const std::string& knownTags,
                      const std::string& unknownCount = "0", const std::string& unknownTags = "") {
    return kLight + "There are " + knownCount + " known tags.\n" + knownTags + "There are " +
           unknownCount + " unknown tags.\n" + unknownTags + kLight;
}

std::string chainOf1(const std::string& onlyDirectory, const std::string& nameCount,
                     const std::string& names) {
    return kHeavy + "There are 1 IFDs in the current set.\nIFD # 0\n" + onlyDirectory +
           "\tThere are " + nameCount + " unique key names in the current set.\n" + kLight + names +
           "\n" + kLight + kHeavy;
}

/// The tests run on little-endian computers.
std::string file(const std::string& name, const std::string& position, const std::string& size,
                 const std::string& base, const std::string& byteOrder, const std::string& chain) {
    return kHeavy + "TagFile:  filename ==> " + name + "\n\tFile pos ==> " + position +
           "\n\tFile size ==> " + size + " bytes.\n\tTiff Header Offset Base ==> " + base +
           "\n\tTiff Header Endian Format ==> " + byteOrder +
           "\n\tComputer Endian Format ==> Little Endian\n" + chain + kHeavy + "\n\n";
}

/// A file and the reader that has read it.
template <class Reader>
class ReadFile {
public:
    explicit ReadFile(const Bytes& bytes) : file_(bytes), reader_(file_.name().c_str()) {
        warnings_ = inCall([this] { reader_.readAll(); }).warnings().size();
    }
    [[nodiscard]] const TagFile& operator*() const { return reader_; }
    [[nodiscard]] const std::string& name() const { return file_.name(); }
    [[nodiscard]] const IFD& firstDirectory() const { return reader_.ifdSet()->directories()[0]; }
    [[nodiscard]] std::size_t warnings() const { return warnings_; }

private:
    MemoryFile file_;
    Reader reader_;
    std::size_t warnings_ = 0;
};

/// Reads a JPEG file, whose image directory gets no fallback tags.
ReadFile<JpegTagFile> readAsJpeg(const TiffBuilder& builder) {
    return ReadFile<JpegTagFile>(jpegWithExif(builder.bytes()));
}

const std::string kFallbacksFrom258To281 =
    fallback("258: BitsPerSample", "1 ") + fallback("259: Compression", "1 ") +
    fallback("263: Thresholding", "1 ") + fallback("266: FillOrder", "1 ") +
    fallback("273: StripOffsets", "") + fallback("274: Orientation", "1 ") +
    fallback("277: SamplesPerPixel", "1 ") + fallback("278: RowsPerStrip", "4.2949673e+09 ") +
    fallback("279: StripByteCounts", "") + fallback("280: MinSampleValue", "0 ") +
    fallback("281: MaxSampleValue", "1 ", "1");
const std::string kFallbacksFrom296 =
    fallback("296: ResolutionUnit", "1 ") + fallback("320: Colormap", "") +
    fallback("322: TileWidth", "") + fallback("323: TileLength", "") +
    fallback("324: TileOffsets", "") + fallback("325: TileByteCounts", "");
const std::string kNamesTo296 =
    "ID: 254 Name:NewSubFileType\n"
    "ID: 258 Name:BitsPerSample\n"
    "ID: 259 Name:Compression\n"
    "ID: 263 Name:Thresholding\n"
    "ID: 266 Name:FillOrder\n"
    "ID: 273 Name:StripOffsets\n"
    "ID: 274 Name:Orientation\n"
    "ID: 277 Name:SamplesPerPixel\n"
    "ID: 278 Name:RowsPerStrip\n"
    "ID: 279 Name:StripByteCounts\n"
    "ID: 280 Name:MinSampleValue\n"
    "ID: 281 Name:MaxSampleValue\n"
    "ID: 282 Name:XResolution\n"
    "ID: 283 Name:YResolution\n"
    "ID: 284 Name:PlanarConfiguration\n"
    "ID: 290 Name:GrayResponseUnit\n"
    "ID: 296 Name:ResolutionUnit\n";
const std::string kNamesFrom320 =
    "ID: 320 Name:Colormap\n"
    "ID: 322 Name:TileWidth\n"
    "ID: 323 Name:TileLength\n"
    "ID: 324 Name:TileOffsets\n"
    "ID: 325 Name:TileByteCounts\n";

TEST(WholeDump, OfAClassicFileHasItsTagsThenItsFallbacks) {
    TiffBuilder tiff;
    tiff.image().shorts(256, {640}).shorts(65000, {7, 8}).shorts(290, {3}).rawAscii(305, "a\n");
    const ReadFile<ClassicTiffTagFile> read(tiff.bytes());
    const std::string known =
        written({"290: GrayResponseUnit", "3", "1", "2", "0", "3 ", "0.001 ", "", ""}) +
        written({"305: Software", "2", "2", "2", "0", "", "", "a\n", ""}) +
        fallback("254: NewSubFileType", "0 ") + kFallbacksFrom258To281 +
        fallback("282: XResolution", "") + fallback("283: YResolution", "") +
        fallback("284: PlanarConfiguration", "1 ") + kFallbacksFrom296;
    const std::string unknown = written({"65000: ", "3", "2", "4", "0", "7 8 ", "7 8 ", "", ""});
    const std::string names = kNamesTo296 + "ID: 305 Name:Software\n" + kNamesFrom320;
    // The file and its only directory end at 8 + 2 + 4 * 12 + 4.
    EXPECT_EQ(dumpOf(*read), file(read.name(), "62", "62", "0", "Little Endian",
                                  chainOf1(directory("23", known, "1", unknown), "23", names)));
}

TEST(WholeDump, OfABigEndianBigTiffFileHasEveryDirectory) {
    TiffBuilder tiff(Order::big, Flavour::big);
    tiff.image().rationals(282, {{1, 3}});
    tiff.addImage().signedRationals(282, {{-1, 3}, {2, 3}});
    const ReadFile<BigTiffTagFile> read(tiff.bytes());
    const std::string fallbacks = fallback("254: NewSubFileType", "0 ") + kFallbacksFrom258To281 +
                                  fallback("283: YResolution", "") +
                                  fallback("284: PlanarConfiguration", "1 ") +
                                  fallback("290: GrayResponseUnit", "0.01 ") + kFallbacksFrom296;
    // Tables of 8 + 20 + 8 bytes at 16 and 52, then the second value.
    const std::string first =
        written({"282: XResolution", "5", "1", "8", "0", "1 3 ", "0.33333333 ", "", ""});
    const std::string second = written({"282: XResolution", "10", "2", "16", "88", "-1 3 2 3 ",
                                        "-0.33333333 0.66666667 ", "", ""});
    EXPECT_EQ(dumpOf(*read),
              file(read.name(), "88", "104", "0", "Big Endian",
                   kHeavy + "There are 2 IFDs in the current set.\nIFD # 0\n" +
                       directory("22", first + fallbacks) + "IFD # 1\n" +
                       directory("22", second + fallbacks) +
                       "\tThere are 22 unique key names in the current set.\n" + kLight +
                       kNamesTo296 + kNamesFrom320 + "\n" + kLight + kHeavy));
}

TEST(WholeDump, OfAJpegFileHasEveryNestedDirectory) {
    TiffBuilder tiff;
    TiffDirectory& exif = tiff.child();
    TiffDirectory& gps = tiff.child();
    TiffDirectory& interoperability = tiff.child();
    tiff.image().sub(34853, gps).sub(34665, exif);
    exif.sub(40965, interoperability);
    gps.bytes(0, {2, 3, 0, 0}).shorts(31, {9});
    interoperability.ascii(1, "R98");
    const auto read = readAsJpeg(tiff);

    // From the header: image 8 + 30, Exif 38 + 18, GPS 56 + 30, Interoperability 86 + 18.
    const std::string interoperabilityChain = chainOf1(
        directory("1",
                  written({"1: InteroperabilityIndex", "2", "4", "4", "0", "", "", "R98\0"s, ""})),
        "1", "ID: 1 Name:InteroperabilityIndex\n");
    const std::string exifChain =
        chainOf1(directory("1", pointer("40965: InteroperabilityIFD", "86", interoperabilityChain)),
                 "1", "ID: 40965 Name:InteroperabilityIFD\n");
    const std::string gpsChain = chainOf1(
        directory("1",
                  written({"0: GPSVersionID", "1", "4", "4", "0", "2 3 0 0 ", "2 3 0 0 ", "", ""}),
                  "1", written({"31: ", "3", "1", "2", "0", "9 ", "9 ", "", ""})),
        "1", "ID: 0 Name:GPSVersionID\n");
    const std::string chain =
        chainOf1(directory("2", pointer("34853: GPSInfo", "56", gpsChain) +
                                    pointer("34665: DigitalCamera", "38", exifChain)),
                 "2", "ID: 34665 Name:DigitalCamera\nID: 34853 Name:GPSInfo\n");
    // The stream stays after the table of the image directory: 12 + 8 + 2 + 24.
    EXPECT_EQ(dumpOf(*read), file(read.name(), "46", "118", "12", "Little Endian", chain));
}

TEST(WholeDump, OfAJpegFileWithoutExifReportsThatNothingIsInitialized) {
    const ReadFile<JpegTagFile> read(Bytes{0xFF, 0xD8, 0xFF, 0xDB, 0, 2, 7});
    EXPECT_EQ(dumpOf(*read), file(read.name(), "6", "7", "0", "unknown???",
                                  "The IFD data structures have not yet been initialized. \n"));
}

TEST(WholeDump, HasASizeBeyond4Gigabytes) {
    const MemoryFile sparse(bytesOf("II"));
    sparse.put(5'000'000'000, Bytes{0});
    const ClassicTiffTagFile reader(sparse.name().c_str());
    EXPECT_EQ(dumpOf<TagFile>(reader),
              file(sparse.name(), "0", "5000000001", "0", "unknown???",
                   "The IFD data structures have not yet been initialized. \n"));
}

TEST(DirectoryDump, OfNoTagsHasBothCounts) {
    EXPECT_EQ(dumpOf(IFD()), directory("0", ""));
}

TEST(DirectoryDump, HasTheNumbersOfEveryDataType) {
    TiffBuilder tiff;
    tiff.image()
        .bytes(50001, {0, 255})
        .rawAscii(50002, "a\0b"s)
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
        written({"50001: ", "1", "2", "2", "0", "0 255 ", "0 255 ", "", ""}) +
        written({"50002: ", "2", "3", "3", "0", "", "", "a\0b"s, ""}) +
        written({"50003: ", "3", "1", "2", "0", "65535 ", "65535 ", "", ""}) +
        written({"50004: ", "4", "1", "4", "0", "4.2949673e+09 ", "4.2949673e+09 ", "", ""}) +
        written({"50005: ", "5", "1", "8", "158", "4.2949673e+09 2 ", "2.1474836e+09 ", "", ""}) +
        written({"50006: ", "6", "2", "2", "0", "-128 127 ", "-128 127 ", "", ""}) +
        written({"50007: ", "7", "1", "1", "0", "200 ", "200 ", "", ""}) +
        written({"50008: ", "8", "1", "2", "0", "-32768 ", "-32768 ", "", ""}) +
        written({"50009: ", "9", "1", "4", "0", "-99999999 ", "-99999999 ", "", ""}) +
        written({"50010: ", "10", "1", "8", "166", "1 -8 ", "-0.125 ", "", ""}) +
        written({"50011: ", "11", "1", "4", "0", "0.1 ", "0.1 ", "", ""}) +
        written({"50012: ", "12", "3", "24", "174", "1e-05 123456.79 0.66666667 ",
                 "1e-05 123456.79 0.66666667 ", "", ""});
    EXPECT_EQ(dumpOf(readAsJpeg(tiff).firstDirectory()), directory("0", "", "12", tags));
}

TEST(DirectoryDump, HasInterpretedNumbersAndTexts) {
    TiffBuilder tiff;
    tiff.image()
        .ascii(270, "abc")
        .rationals(282, {{1, 0}, {3, 2}})
        .undefined(34675, {1, 2, 3, 4, 5});
    const auto read = readAsJpeg(tiff);
    EXPECT_EQ(read.warnings(), 1U) << "of the division by zero";
    // Values outside the entries begin at 8 + 2 + 3 * 12 + 4.
    const std::string tags =
        written({"270: ImageDescription", "2", "4", "4", "0", "", "", "abc", ""}) +
        written({"282: XResolution", "5", "2", "16", "50", "1 0 3 2 ", "nan 1.5 ", "", ""}) +
        written({"34675: ICCProfileOffset", "7", "5", "5", "66", "1 2 3 4 5 ", "66 ", "", ""});
    EXPECT_EQ(dumpOf(read.firstDirectory()), directory("3", tags));
}

TEST(DirectoryDump, HasTheStatedTypeAndCountOfAPointer) {
    TiffBuilder tiff;
    tiff.image().entryAt(330, 13, 2, 26);
    tiff.child().shorts(305, {1});  // after the only entry, at 8 + 2 + 12 + 4
    const std::string chain =
        chainOf1(directory("1", written({"305: Software", "3", "1", "2", "0", "1 ", "1 ", "", ""})),
                 "1", "ID: 305 Name:Software\n");
    EXPECT_EQ(dumpOf(readAsJpeg(tiff).firstDirectory()),
              directory("1", written({"330: SubIFDs", "13", "2", "8", "26", "", "", "", chain})));
}

TEST(TagDump, OfAFallbackHasANumberForEachSample) {
    EXPECT_EQ(dumpOf(TiffTag(258, IfdId::image, 3U)), fallback("258: BitsPerSample", "1 1 1 "));
    EXPECT_EQ(dumpOf(TiffTag(281, IfdId::image, std::vector<double>{8, 16, 32})),
              fallback("281: MaxSampleValue", "255 65535 4.2949673e+09 ", "3"));
}

}  // namespace

}  // namespace veltrace::test
