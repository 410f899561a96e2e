#include "faults/scenarios.h"

#include <ostream>
#include <utility>

#include "support/jpeg_parts.h"
#include "support/nested_file.h"
#include "support/tiff_builder.h"
#include "sweep/seeds.h"

namespace veltrace::test {

namespace {

using Messages = std::vector<std::string>;

Scenario reads(std::string name, Bytes file, Messages messages) {
    return {.name = std::move(name), .file = std::move(file), .messages = std::move(messages)};
}

Scenario calls(std::string name, std::vector<zephra::Argument> arguments, Messages messages) {
    return {.name = std::move(name),
            .file = std::nullopt,
            .arguments = std::move(arguments),
            .messages = std::move(messages)};
}

Bytes manyPages(std::size_t count) {
    TiffBuilder file(Order::big);
    file.image().shorts(297, {0});
    for (std::size_t page = 1; page < count; ++page) {
        file.addImage().shorts(297, {static_cast<std::uint16_t>(page)});
    }
    return file.bytes();
}

/// A value for which the module asks the system for large pages.
Bytes largeValue() {
    return tiffOf({Order::big}, Dir().shorts(274, {6}).doubles(
                                    65000, std::vector<double>(std::size_t{1} << 19, 0.5)));
}

Bytes manyWarnings(std::uint16_t count) {
    TiffBuilder file;
    file.image().shorts(274, {6});
    for (std::uint16_t i = 0; i < count; ++i) {
        file.image().entry(static_cast<std::uint16_t>(40000 + i), 14, 1, {0, 0, 0, 0});
    }
    return file.bytes();
}

/// An Exif directory that has a tag with the name of a default field of images, which no Exif
/// directory of a TIFF file has.
Bytes namesWithoutAPlace() {
    return tiffOf(Dir().nest(34665, Dir().shorts(37383, {5}).shorts(274, {6})));
}

Bytes gpsWithin(std::uint16_t pointer) {
    return tiffOf(
        {Order::big, Flavour::big},
        Dir().nest(pointer, Dir().bytes(0, {2, 3, 0, 0}).nest(34853, Dir().shorts(1, {1}))));
}

Bytes linked(std::uint64_t next) {
    return tiffOf(Dir().shorts(274, {6}).next(next));
}

Bytes cutShort(Bytes bytes, std::size_t by) {
    bytes.resize(bytes.size() - by);
    return bytes;
}

Bytes firstDirectoryAt(std::uint64_t offset, Flavour flavour) {
    TiffBuilder file(Order::little, flavour);
    file.image().shorts(274, {6});
    return file.firstOffset(offset).bytes();
}

Bytes withSubDirectoryAt(std::uint16_t pointer, std::uint32_t offset) {
    return tiffOf(Dir().shorts(274, {6}).entryAt(pointer, 4, 1, offset));
}

std::vector<Scenario> callsWithoutAFile() {
    return {
        calls("NoArgument", {}, {"badInputArgumentCount"}),
        calls("TwoArguments", {std::string("a"), std::string("b")}, {"badInputArgumentCount"}),
        calls("Number", {1.5}, {"badImageFileArgument"}),
        calls("EmptyCell", {zephra::EmptyArgument{qvClassCell}}, {"badImageFileArgument"}),
        calls("EmptyStructure", {zephra::EmptyArgument{qvClassStruct}}, {"badImageFileArgument"}),
        calls("EmptyName", {std::string()}, {"badFilename"}),
        calls("NoSuchFile", {std::string("/proc/self/no-such-file-of-a-kiln")}, {"badFilename"}),
        calls("Folder", {std::string("/proc/self")}, {"unhandledFileFormat"}),
    };
}

std::vector<Scenario> filesOfOtherFormats() {
    return {
        reads("EmptyFile", {}, {"unhandledFileFormat"}),
        reads("OneByte", {0xFF}, {"unhandledFileFormat"}),
        reads("PlainText", bytesOf("just some text"), {"unhandledFileFormat"}),
        reads("BigEndianBigTiffAsPublished", {'M', 'M', 0, 0x2B, 0, 8, 0, 0},
              {"unhandledFileFormat"}),
    };
}

std::vector<Scenario> jpegWalks() {
    const Bytes tables = segment(0xDB, {0});
    const Bytes walk = kStartOfImage + segment(0xE0, Bytes(14)) + segment(0xE2, Bytes(300));
    return {
        reads("JpegOfTwoBytes", kStartOfImage, {"jpegMarkerReadFailure"}),
        reads("JpegWithoutExif", kStartOfImage + tables, {}),
        reads("JpegLongWalk", walk + app1(kExif, rotatedTiff(6, Order::big)) + tables, {}),
        reads("JpegInvalidMarker", kStartOfImage + Bytes{0xFE, 0xE1, 0, 8}, {"invalidJpegMarker"}),
        reads("JpegOtherApp1", kStartOfImage + segment(0xE1, bytesOf("http://ns.kiln/")),
              {"badJpegExifHeaderValue", "badEndianness"}),
        reads("JpegExifUnderAnotherName", kStartOfImage + app1(bytesOf("Kiln12"), rotatedTiff(6)),
              {"badJpegExifHeaderValue"}),
        reads("JpegCutInLength", kStartOfImage + Bytes{0xFF, 0xE1, 0},
              {"lowOrderByteSectionSizeReadFailure"}),
        reads("JpegCutInIdentifier", kStartOfImage + Bytes{0xFF, 0xE1, 0, 8, 'E', 'x'},
              {"badJpegExifHeaderRead"}),
    };
}

std::vector<Scenario> damagedStructures() {
    const std::size_t past = 1 << 20;
    return {
        reads("ClassicHeaderCutShort", {'I', 'I', 42, 0, 8, 0}, {"badTiffHeaderOffsetRead"}),
        reads("BigHeaderCutShort", {'I', 'I', 43, 0, 8, 0, 0}, {"bigTiff:badOffsetSizeRead"}),
        reads("FirstDirectoryOutside", firstDirectoryAt(past, Flavour::classic),
              {"badTiffIfdOffset"}),
        reads("FirstBigDirectoryOutside", firstDirectoryAt(past, Flavour::big),
              {"bigTiff:badTiffIfdOffset"}),
        reads("TableCutShort", cutShort(rotatedTiff(6), 9), {"badRawIfdRead"}),
        reads("LinkCutShort", cutShort(rotatedTiff(6), 3), {"TagFile:nextIfdOffsetReadError"}),
        reads("LinkLeadsOutside", linked(past), {"badNextIfdPointer"}),
        reads("LinkLeadsToTheEnd", linked(26), {"numIfdEntriesReadError"}),
        reads("ExifDirectoryOutside", withSubDirectoryAt(34665, past), {"numIfdEntriesReadError"}),
        reads("SubImageOutside", withSubDirectoryAt(330, past), {"numIfdEntriesReadError"}),
        reads("GpsWithinGps", gpsWithin(34853), {"TiffTag:illegallyNestedIfdWithinGpsIfd"}),
        reads("GpsWithinInteroperability", gpsWithin(40965),
              {"TiffTag:illegallyNestedIfdWithinIopIfd"}),
    };
}

std::vector<Scenario> largeStructures() {
    return {
        reads("Nested", nestedExif(10), {}),
        reads("ManyPages", manyPages(6), {}),
        reads("LargeValue", largeValue(), {}),
        reads("ManyWarnings", manyWarnings(8), Messages(8, "badTagFormat")),
        reads("NamesWithoutAPlace", namesWithoutAPlace(), {}),
    };
}

std::vector<Scenario> allScenarios() {
    std::vector<Scenario> all;
    for (const Seed& seed : seeds()) {
        all.push_back({.name = seed.name + "Little", .file = seed.little});
        all.push_back({.name = seed.name + "Big", .file = seed.big});
    }
    for (auto* const more :
         {callsWithoutAFile, filesOfOtherFormats, jpegWalks, damagedStructures, largeStructures}) {
        for (Scenario& scenario : more()) {
            all.push_back(std::move(scenario));
        }
    }
    return all;
}

}  // namespace

void PrintTo(const Scenario& scenario, std::ostream* out) {
    *out << scenario.name;
}

const std::vector<Scenario>& scenarios() {
    static const std::vector<Scenario> all = allScenarios();
    return all;
}

}  // namespace veltrace::test
