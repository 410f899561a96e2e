#include "files/generated_files.h"

#include <cstdint>
#include <string>

#include "support/nested_file.h"

namespace veltrace::bench {

namespace {

using test::append;
using test::operator+;
using test::Flavour;
using test::TiffBuilder;
using test::TiffDirectory;

constexpr std::uint16_t kShort = 3;
constexpr std::uint16_t kLong = 4;
constexpr std::uint16_t kRational = 5;
constexpr std::uint16_t kDouble = 12;

/// Appends an entry of a classic little-endian file.
void appendEntry(Bytes& bytes, std::uint16_t tag, std::uint16_t type, std::uint32_t count,
                 std::uint32_t valueOrOffset) {
    append(bytes, Order::little, tag);
    append(bytes, Order::little, type);
    append(bytes, Order::little, count);
    append(bytes, Order::little, valueOrOffset);
}

Bytes header(Order order, std::uint32_t firstDirectory) {
    Bytes bytes = test::bytesOf(order == Order::little ? "II" : "MM");
    append(bytes, order, std::uint16_t{42});
    append(bytes, order, firstDirectory);
    return bytes;
}

// Above every tag that the dictionary knows.
constexpr std::size_t kFirstPrivateTag = 60000;
constexpr std::size_t kPrivateTags = 5000;

// ModelTransformationTag, for one.
constexpr std::uint16_t kManyValues = 34264;

constexpr std::uint32_t kHeaderBytes = 8;
constexpr std::uint32_t kPageEntries = 12;
constexpr std::uint32_t kPageTableBytes = 2 + 12 * kPageEntries + 4;
constexpr std::uint32_t kPageBytes = kPageTableBytes + 2 * 8;

/// The page at `position`; the next one follows it.
void appendPage(Bytes& bytes, std::uint32_t position, bool isLast) {
    const std::uint32_t values = position + kPageTableBytes;
    append(bytes, Order::little, static_cast<std::uint16_t>(kPageEntries));
    appendEntry(bytes, 254, kLong, 1, 2);
    appendEntry(bytes, 256, kLong, 1, 1728);
    appendEntry(bytes, 257, kLong, 1, 2200);
    appendEntry(bytes, 258, kShort, 1, 1);
    appendEntry(bytes, 259, kShort, 1, 4);
    appendEntry(bytes, 262, kShort, 1, 0);
    appendEntry(bytes, 273, kLong, 1, kHeaderBytes);
    appendEntry(bytes, 278, kLong, 1, 2200);
    appendEntry(bytes, 279, kLong, 1, 16);
    appendEntry(bytes, 282, kRational, 1, values);
    appendEntry(bytes, 283, kRational, 1, values + 8);
    appendEntry(bytes, 296, kShort, 1, 2);
    append(bytes, Order::little, isLast ? std::uint32_t{0} : position + kPageBytes);
    for (const std::uint32_t number : {204U, 1U, 196U, 1U}) {
        append(bytes, Order::little, number);
    }
}

std::uint16_t code(ValueType type) {
    switch (type) {
        case ValueType::shorts:
            return kShort;
        case ValueType::longs:
            return kLong;
        case ValueType::rationals:
            return kRational;
        case ValueType::doubles:
            return kDouble;
    }
    return 0;
}

void appendValue(Bytes& bytes, ValueType type, Order order, std::size_t number) {
    switch (type) {
        case ValueType::shorts:
            return append(bytes, order, static_cast<std::uint16_t>(number));
        case ValueType::longs:
            return append(bytes, order, static_cast<std::uint32_t>(number));
        case ValueType::rationals:
            append(bytes, order, static_cast<std::uint32_t>(number));
            return append(bytes, order, std::uint32_t{8});
        case ValueType::doubles:
            // The bits of a number between 1 and 2.
            return append(bytes, order, (std::uint64_t{0x3FF} << 52) | number);
    }
}

/// The list of an entry with `count` values.
Bytes valueList(ValueType type, std::size_t count, Order order) {
    Bytes list;
    for (std::size_t i = 0; i < count; ++i) {
        appendValue(list, type, order, i);
    }
    return list;
}

std::uint16_t privateTag(std::size_t number) {
    return static_cast<std::uint16_t>(kFirstPrivateTag + number % kPrivateTags);
}

constexpr std::size_t kGrayImageEntries = 9;

void describeGrayImage(TiffDirectory& image) {
    image.longs(256, {4})
        .longs(257, {3})
        .shorts(258, {8})
        .shorts(259, {1})
        .shorts(262, {1})
        .longs(273, {kHeaderBytes})  // any bytes will do for pixels
        .shorts(277, {1})
        .longs(278, {3})
        .longs(279, {4 * 3});
}

void describeImage(TiffDirectory& image, std::size_t number) {
    image.longs(256, {4000})
        .longs(257, {3000})
        .shorts(258, {8, 8, 8})
        .ascii(270, "Frame " + std::to_string(number))
        .ascii(271, "Sample")
        .ascii(272, "Box 1")
        .rationals(282, {{300, 1}})
        .ascii(306, "2020:06:01 12:00:00");
}

void describeWholeImage(TiffDirectory& image, std::size_t number) {
    image.longs(256, {4})
        .longs(257, {3})
        .shorts(258, {8, 8, 8})
        .shorts(259, {1})
        .shorts(262, {2})
        .ascii(270, "Frame " + std::to_string(number))
        .ascii(271, "Sample")
        .ascii(272, "Box 1")
        .longs(273, {kHeaderBytes})  // any bytes will do for pixels
        .shorts(277, {3})
        .longs(278, {3})
        .longs(279, {4 * 3 * 3})
        .rationals(282, {{300, 1}})
        .ascii(306, "2020:06:01 12:00:00");
}

void describeExposure(TiffDirectory& exif) {
    exif.rationals(33434, {{1, 125}})
        .rationals(33437, {{28, 10}})
        .shorts(34850, {2})
        .shorts(34855, {100})
        .undefined(36864, {'0', '2', '2', '1'})
        .ascii(36867, "2020:06:01 12:00:00")
        .ascii(36868, "2020:06:01 12:00:00")
        .undefined(37121, {1, 2, 3, 0})
        .rationals(37122, {{4, 1}})
        .signedRationals(37377, {{6966, 1000}})
        .rationals(37378, {{2970, 1000}})
        .signedRationals(37380, {{-1, 3}})
        .rationals(37381, {{2970, 1000}})
        .shorts(37383, {5})
        .shorts(37384, {0})
        .shorts(37385, {16})
        .rationals(37386, {{50, 1}})
        .undefined(37500, std::vector<std::uint8_t>(256, 'm'))
        .undefined(40960, {'0', '1', '0', '0'})
        .shorts(40961, {1})
        .longs(40962, {4000})
        .longs(40963, {3000})
        .shorts(41986, {0})
        .shorts(41987, {0});
}

void describePlace(TiffDirectory& gps) {
    gps.bytes(0, {2, 2, 0, 0})
        .ascii(1, "N")
        .rationals(2, {{52, 1}, {30, 1}, {1234, 100}})
        .ascii(3, "E")
        .rationals(4, {{13, 1}, {24, 1}, {1820, 100}})
        .bytes(5, {0})
        .rationals(6, {{34, 1}})
        .ascii(29, "2020:06:01");
}

Bytes photographWith(void (*describe)(TiffDirectory&, std::size_t), Order order,
                     std::size_t number) {
    TiffBuilder builder(order);
    TiffDirectory& image = builder.image();
    describe(image, number);
    TiffDirectory& exif = builder.child();
    describeExposure(exif);
    TiffDirectory& gps = builder.child();
    describePlace(gps);
    image.sub(34665, exif).sub(34853, gps);
    return builder.bytes();
}

}  // namespace

Bytes chain(std::size_t directories) {
    Bytes bytes = header(Order::little, kHeaderBytes);
    for (std::size_t i = 0; i < directories; ++i) {
        appendPage(bytes, static_cast<std::uint32_t>(bytes.size()), i + 1 == directories);
    }
    return bytes;
}

Bytes wideDirectory(std::size_t entries) {
    Bytes bytes = header(Order::little, kHeaderBytes);
    append(bytes, Order::little, static_cast<std::uint16_t>(entries));
    for (std::size_t i = 0; i < entries; ++i) {
        appendEntry(bytes, privateTag(i), kShort, 1, 7);
    }
    append(bytes, Order::little, std::uint32_t{0});
    return bytes;
}

Bytes values(ValueType type, std::size_t count, Order order) {
    constexpr std::uint32_t kDirectoryBytes = 2 + 12 + 4;
    Bytes bytes = header(order, kHeaderBytes);
    append(bytes, order, std::uint16_t{1});
    append(bytes, order, kManyValues);
    append(bytes, order, code(type));
    append(bytes, order, static_cast<std::uint32_t>(count));
    Bytes list = valueList(type, count, order);
    if (list.size() <= 4) {
        list.resize(4);
        bytes = bytes + list;
        append(bytes, order, std::uint32_t{0});
        return bytes;
    }
    append(bytes, order, kHeaderBytes + kDirectoryBytes);
    append(bytes, order, std::uint32_t{0});
    return bytes + list;
}

Bytes wideImage(std::size_t entries) {
    TiffBuilder builder;
    TiffDirectory& image = builder.image();
    describeGrayImage(image);
    for (std::size_t i = kGrayImageEntries; i < entries; ++i) {
        image.shorts(privateTag(i), {7});
    }
    return builder.bytes();
}

Bytes imageWithValues(ValueType type, std::size_t count, Order order) {
    TiffBuilder builder(order);
    TiffDirectory& image = builder.image();
    describeGrayImage(image);
    image.entry(kManyValues, code(type), static_cast<std::uint32_t>(count),
                valueList(type, count, order));
    return builder.bytes();
}

Bytes nesting(std::size_t depth) {
    return test::nestedExif(depth);
}

Bytes bigPage() {
    TiffBuilder builder(Order::little, Flavour::big);
    builder.image()
        .longs(254, {0})
        .longs(256, {640})
        .longs(257, {480})
        .shorts(258, {8, 8, 8})
        .shorts(259, {1})
        .shorts(262, {2})
        .longs(273, {16})
        .shorts(277, {3})
        .longs(278, {480})
        .longs(279, {16})
        .rationals(282, {{72, 1}})
        .rationals(283, {{72, 1}});
    return builder.bytes();
}

Bytes photograph(Order order, std::size_t number) {
    return photographWith(describeImage, order, number);
}

Bytes wholePhotograph(Order order, std::size_t number) {
    return photographWith(describeWholeImage, order, number);
}

Bytes jpegPhotograph(Order order, std::size_t number) {
    return test::jpegWithExif(photograph(order, number));
}

}  // namespace veltrace::bench
