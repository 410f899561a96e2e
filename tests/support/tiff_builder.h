// Builds TIFF structures in words.
#pragma once

#include <concepts>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "support/bytes.h"

namespace veltrace::test {

enum class Order { little, big };

/// `big` writes entries of 20 bytes as the module reads them: a 32-bit count at byte 4, a 32-bit
/// offset at byte 8, a value of up to 8 bytes at byte 12. For little-endian entries with their
/// value inside this is BigTIFF as published.
enum class Flavour { classic, big };

struct Encoding {
    Order order = Order::little;
    Flavour flavour = Flavour::classic;
};

/// Appends `number` in a byte order.
template <class Number>
void append(Bytes& bytes, Order order, Number number);

template <class Number>
struct Fraction {
    Number numerator;
    Number denominator;
};

/// One directory: its entries in the order of the calls, with any damage that is asked for.
/// Values that fit are written into the entry, others behind the table, in the order of the file
/// that the directory is added to.
class TiffDirectory {
public:
    TiffDirectory& bytes(std::uint16_t tag, const std::vector<std::uint8_t>& values);
    /// Adds the terminating NUL of the format.
    TiffDirectory& ascii(std::uint16_t tag, std::string_view text);
    /// The characters as they are.
    TiffDirectory& rawAscii(std::uint16_t tag, std::string_view text);
    TiffDirectory& shorts(std::uint16_t tag, const std::vector<std::uint16_t>& values);
    TiffDirectory& longs(std::uint16_t tag, const std::vector<std::uint32_t>& values);
    TiffDirectory& rationals(std::uint16_t tag, const std::vector<Fraction<std::uint32_t>>& values);
    TiffDirectory& signedBytes(std::uint16_t tag, const std::vector<std::int8_t>& values);
    TiffDirectory& undefined(std::uint16_t tag, const std::vector<std::uint8_t>& values);
    TiffDirectory& signedShorts(std::uint16_t tag, const std::vector<std::int16_t>& values);
    TiffDirectory& signedLongs(std::uint16_t tag, const std::vector<std::int32_t>& values);
    TiffDirectory& signedRationals(std::uint16_t tag,
                                   const std::vector<Fraction<std::int32_t>>& values);
    TiffDirectory& floats(std::uint16_t tag, const std::vector<float>& values);
    TiffDirectory& doubles(std::uint16_t tag, const std::vector<double>& values);

    /// An entry of any type and count whose value is `value`, already in the file's byte order.
    TiffDirectory& entry(std::uint16_t tag, std::uint16_t type, std::uint32_t count,
                         const Bytes& value);
    /// An entry of any type and count with this offset and no value behind it.
    TiffDirectory& entryAt(std::uint16_t tag, std::uint16_t type, std::uint32_t count,
                           std::uint32_t offset);
    /// A pointer tag (type LONG, count 1) to a directory of the same builder.
    TiffDirectory& sub(std::uint16_t tag, const TiffDirectory& directory);
    TiffDirectory& sub(std::uint16_t tag, const TiffDirectory&& directory) = delete;
    /// A pointer tag to a copy of this directory, which is written behind all others.
    TiffDirectory& nest(std::uint16_t tag, const TiffDirectory& directory);

    /// States this entry count, whatever was added.
    TiffDirectory& statedCount(std::uint64_t count);
    /// States this offset of the next directory, whatever follows.
    TiffDirectory& next(std::uint64_t offset);

private:
    friend class TiffBuilder;

    struct Entry {
        std::uint16_t tag;
        std::uint16_t type;
        std::uint32_t count;
        Bytes value;
        std::size_t width = 1;  ///< of the little-endian numbers in the value
        std::optional<std::uint32_t> offset = std::nullopt;
        const TiffDirectory* target = nullptr;
        std::shared_ptr<const TiffDirectory> nested = nullptr;  ///< the target, if it is owned
    };

    template <class Number>
    TiffDirectory& numbers(std::uint16_t tag, std::uint16_t type,
                           const std::vector<Number>& values);
    template <class Number>
    TiffDirectory& fractions(std::uint16_t tag, std::uint16_t type,
                             const std::vector<Fraction<Number>>& values);

    std::vector<Entry> entries_;
    std::optional<std::uint64_t> statedCount_;
    std::optional<std::uint64_t> next_;
};

using Dir = TiffDirectory;

/// A whole TIFF structure: header, main chain, and directories outside the chain. References to
/// directories stay valid as long as the builder.
class TiffBuilder {
public:
    explicit TiffBuilder(Order order = Order::little, Flavour flavour = Flavour::classic)
        : order_(order), flavour_(flavour) {}

    /// The first directory of the main chain.
    TiffDirectory& image();
    /// A further directory at the end of the main chain.
    TiffDirectory& addImage(const TiffDirectory& directory = {});
    /// A directory outside the main chain, for `TiffDirectory::sub`.
    TiffDirectory& child();

    /// States this offset of the first directory, whatever is right.
    TiffBuilder& firstOffset(std::uint64_t offset);
    /// States this version instead of 42 or 43. The module recognises formats by it, so
    /// BigTIFF in big-endian order has the bytes 2B 00, which is what the module accepts.
    TiffBuilder& version(std::uint16_t version);

    [[nodiscard]] Bytes bytes() const;
    /// Position of a directory's count field, from the header.
    [[nodiscard]] std::uint64_t positionOf(const TiffDirectory& directory) const;
    /// Position of the entry of this index, from the header.
    [[nodiscard]] std::uint64_t entryPosition(const TiffDirectory& directory,
                                              std::size_t index) const;

private:
    [[nodiscard]] std::vector<const TiffDirectory*> allDirectories() const;
    void appendHeader(Bytes& bytes) const;
    void appendDirectory(Bytes& bytes, const TiffDirectory& directory) const;
    void appendEntry(Bytes& bytes, const TiffDirectory::Entry& entry,
                     std::uint64_t valuePosition) const;
    [[nodiscard]] Bytes valueOf(const TiffDirectory::Entry& entry) const;
    [[nodiscard]] bool isOutside(const TiffDirectory::Entry& entry) const;
    [[nodiscard]] std::size_t tableBytes(const TiffDirectory& directory) const;
    void appendOffset(Bytes& bytes, std::uint64_t offset) const;
    [[nodiscard]] std::uint64_t successorOf(const TiffDirectory& directory) const;

    Order order_;
    Flavour flavour_;
    std::deque<TiffDirectory> images_;
    std::deque<TiffDirectory> children_;
    std::optional<std::uint64_t> firstOffset_;
    std::optional<std::uint16_t> version_;
};

/// A TIFF structure whose main chain has these directories.
template <std::same_as<TiffDirectory>... Images>
[[nodiscard]] Bytes tiffOf(Encoding encoding, const Images&... images) {
    TiffBuilder file(encoding.order, encoding.flavour);
    (file.addImage(images), ...);
    return file.bytes();
}

template <std::same_as<TiffDirectory>... Images>
[[nodiscard]] Bytes tiffOf(const Images&... images) {
    return tiffOf(Encoding{}, images...);
}

/// A JPEG file: SOI, an APP1 segment that holds `tiff` behind the Exif identifier, EOI.
[[nodiscard]] Bytes jpegWithExif(const Bytes& tiff);

}  // namespace veltrace::test
