#include "sweep/seeds.h"

#include <ostream>

#include "support/jpeg_parts.h"
#include "support/tiff_builder.h"

namespace veltrace::test {

namespace {

using Recipe = void (*)(TiffBuilder&);

// Each recipe is a file of its own; what they share stays unshared, to keep every seed small.

void emptyDirectory(TiffBuilder& file) {
    file.image();
}

void everyTypeInside(TiffBuilder& file) {
    file.image()
        .bytes(271, {0, 127, 128, 255})
        .ascii(272, "kil")
        .shorts(297, {1, 65535})
        .longs(305, {4294967295})
        .signedBytes(306, {-1, -128, 127})
        .undefined(315, {1, 2})
        .signedShorts(316, {-2, 32767})
        .signedLongs(285, {-3})
        .floats(286, {-0.5F});
}

void everyTypeOutside(TiffBuilder& file) {
    file.image()
        .bytes(271, {0, 1, 2, 3, 127, 128, 254, 255, 9})
        .ascii(272, "the kiln")
        .shorts(297, {0, 1, 32768, 65535, 258})
        .longs(305, {0, 2147483648, 16909060})
        .rationals(287, {{1, 3}, {4294967295, 2}})
        .signedBytes(306, {0, -1, 1, -128, 127, 5, 6, 7, 8})
        .undefined(315, {0, 200, 3, 4, 5, 6, 7, 8, 9})
        .signedShorts(316, {0, -1, -32768, 32767, 258})
        .signedLongs(285, {0, -1, -2147483647})
        .signedRationals(318, {{-1, 3}, {1, -4}})
        .floats(286, {0.25F, -1.5F, 3e9F})
        .doubles(319, {0.1, -1e300});
}

void texts(TiffBuilder& file) {
    file.image()
        .ascii(270, "a kiln\nof brick")
        .ascii(33432, std::string_view("one\0two", 7))
        .rawAscii(269, "no end")
        .rawAscii(333, "")
        .bytes(700, {'<', 'x', '/', '>', ' '})
        .undefined(37510, {'A', 'S', 'C', 'I', 'I', 0, 0, 0, 'h', 'i'});
}

void fractions(TiffBuilder& file) {
    file.image()
        .rationals(282, {{72, 1}})
        .rationals(283, {{1, 0}})
        .rationals(318, {{0, 0}, {1, 3}})
        .signedRationals(37380, {{-1, 2}, {0, -5}})
        .signedRationals(50000, {{3, 0}});
}

void colours(TiffBuilder& file) {
    file.image()
        .shorts(256, {6})
        .longs(257, {4})
        .shorts(258, {8, 8, 8})
        .shorts(262, {3})
        .shorts(277, {3})
        .shorts(320, {0, 32768, 65535, 1, 2, 3})
        .shorts(338, {0, 1})
        .shorts(339, {1, 2, 3});
}

void words(TiffBuilder& file) {
    file.image()
        .shorts(259, {32946})
        .shorts(262, {32803})
        .shorts(284, {2})
        .shorts(290, {3})
        .shorts(296, {3})
        .shorts(317, {2})
        .longs(332, {1})
        .shorts(339, {6})
        .shorts(512, {14})
        .shorts(531, {2})
        .undefined(34675, {1, 2, 3, 4, 5, 6, 7, 8, 9});
}

void camera(TiffBuilder& file) {
    file.image()
        .ascii(271, "Kiln")
        .nest(34665, Dir()
                         .rationals(33434, {{1, 125}})
                         .undefined(36864, {'0', '2', '3', '0'})
                         .shorts(37383, {5})
                         .nest(40965, Dir().ascii(1, "R98").shorts(4097, {640})))
        .nest(34853, Dir().bytes(0, {2, 3, 0, 0}).rationals(2, {{48, 1}, {8, 1}, {0, 1}}));
}

void subImages(TiffBuilder& file) {
    auto& first = file.child().shorts(256, {3}).ascii(271, "small");
    auto& second = file.child().shorts(256, {2}).shorts(50001, {9});
    first.next(0);  // an offset takes the same room whatever it states
    file.image().shorts(256, {6}).sub(330, first);
    first.next(file.positionOf(second));
}

void pages(TiffBuilder& file) {
    file.image().shorts(297, {0, 3}).ascii(285, "one");
    file.addImage().shorts(297, {1, 3}).shorts(50000, {1});
    file.addImage().shorts(297, {2, 3}).shorts(262, {2});
}

void unknownTags(TiffBuilder& file) {
    file.image()
        .shorts(50000, {7})
        .longs(50001, {1, 2, 3})
        .ascii(50002, "a text of it")
        .rawAscii(50003, std::string_view("\0ab", 3))
        .doubles(65535, {2.5})
        .entry(0, 3, 0, {});
}

/// Entries that fail among others; then a directory that has no other.
void damagedEntries(TiffBuilder& file) {
    file.image()
        .entry(271, 0, 1, {1, 0, 0, 0})
        .entry(272, 14, 1, {1, 0, 0, 0})
        .entryAt(305, 13, 1, 1)
        .entryAt(306, 12, 9, 60000)
        .entryAt(307, 12, 0x7FFFFFFF, 8)
        .nest(34853, Dir().nest(34665, Dir().shorts(1, {1})))
        .shorts(274, {6});
    file.addImage().entry(271, 16, 1, {0, 0, 0, 0});
}

Seed tiffSeed(const std::string& name, Flavour flavour, Recipe recipe) {
    TiffBuilder little(Order::little, flavour);
    TiffBuilder big(Order::big, flavour);
    recipe(little);
    recipe(big);
    return {name, little.bytes(), big.bytes(), 0};
}

Seed jpegSeed(const std::string& name, Recipe recipe) {
    const Seed tiff = tiffSeed(name, Flavour::classic, recipe);
    const Bytes before = kStartOfImage + segment(0xE0, bytesOf("kiln"));
    const auto wrapped = [&before](const Bytes& content) {
        return before + app1(kExif, content) + segment(0xDB, {0});
    };
    const std::size_t header = before.size() + 4 + kExif.size();
    return {name, wrapped(tiff.little), wrapped(tiff.big), header};
}

std::vector<Seed> allSeeds() {
    return {
        tiffSeed("ClassicEmptyDirectory", Flavour::classic, emptyDirectory),
        tiffSeed("ClassicTypesInside", Flavour::classic, everyTypeInside),
        tiffSeed("ClassicTypesOutside", Flavour::classic, everyTypeOutside),
        tiffSeed("ClassicTexts", Flavour::classic, texts),
        tiffSeed("ClassicFractions", Flavour::classic, fractions),
        tiffSeed("ClassicColours", Flavour::classic, colours),
        tiffSeed("ClassicWords", Flavour::classic, words),
        tiffSeed("ClassicCamera", Flavour::classic, camera),
        tiffSeed("ClassicSubImages", Flavour::classic, subImages),
        tiffSeed("ClassicPages", Flavour::classic, pages),
        tiffSeed("ClassicUnknownTags", Flavour::classic, unknownTags),
        tiffSeed("ClassicDamagedEntries", Flavour::classic, damagedEntries),
        tiffSeed("BigEmptyDirectory", Flavour::big, emptyDirectory),
        tiffSeed("BigTypesInside", Flavour::big, everyTypeInside),
        tiffSeed("BigCamera", Flavour::big, camera),
        tiffSeed("BigPages", Flavour::big, pages),
        jpegSeed("JpegTexts", texts),
        jpegSeed("JpegCamera", camera),
        jpegSeed("JpegPages", pages),
        jpegSeed("JpegDamagedEntries", damagedEntries),
    };
}

}  // namespace

void PrintTo(const Seed& seed, std::ostream* out) {
    *out << seed.name;
}

const std::vector<Seed>& seeds() {
    static const std::vector<Seed> all = allSeeds();
    return all;
}

}  // namespace veltrace::test
