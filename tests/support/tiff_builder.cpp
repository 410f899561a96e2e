#include "support/tiff_builder.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace veltrace::test {

template <class Number>
void append(Bytes& bytes, Order order, Number number) {
    std::uint8_t raw[sizeof number];
    std::memcpy(raw, &number, sizeof number);  // the tests run on little-endian computers
    if (order == Order::big) {
        std::reverse(std::begin(raw), std::end(raw));
    }
    bytes.insert(bytes.end(), std::begin(raw), std::end(raw));
}

template void append(Bytes&, Order, std::uint16_t);
template void append(Bytes&, Order, std::uint32_t);
template void append(Bytes&, Order, std::uint64_t);

namespace {

std::size_t padded(std::size_t size) {
    return size + size % 2;
}

}  // namespace

template <class Number>
TiffDirectory& TiffDirectory::numbers(std::uint16_t tag, std::uint16_t type,
                                      const std::vector<Number>& values) {
    entries_.push_back({tag, type, static_cast<std::uint32_t>(values.size()), {}, sizeof(Number)});
    for (const Number number : values) {
        append(entries_.back().value, Order::little, number);
    }
    return *this;
}

template <class Number>
TiffDirectory& TiffDirectory::fractions(std::uint16_t tag, std::uint16_t type,
                                        const std::vector<Fraction<Number>>& values) {
    std::vector<Number> halves;
    for (const Fraction<Number>& fraction : values) {
        halves.push_back(fraction.numerator);
        halves.push_back(fraction.denominator);
    }
    numbers(tag, type, halves);
    entries_.back().count /= 2;
    return *this;
}

TiffDirectory& TiffDirectory::bytes(std::uint16_t tag, const std::vector<std::uint8_t>& values) {
    return numbers(tag, 1, values);
}

TiffDirectory& TiffDirectory::ascii(std::uint16_t tag, std::string_view text) {
    Bytes value = bytesOf(text);
    value.push_back(0);
    return entry(tag, 2, static_cast<std::uint32_t>(value.size()), value);
}

TiffDirectory& TiffDirectory::rawAscii(std::uint16_t tag, std::string_view text) {
    return entry(tag, 2, static_cast<std::uint32_t>(text.size()), bytesOf(text));
}

TiffDirectory& TiffDirectory::shorts(std::uint16_t tag, const std::vector<std::uint16_t>& values) {
    return numbers(tag, 3, values);
}

TiffDirectory& TiffDirectory::longs(std::uint16_t tag, const std::vector<std::uint32_t>& values) {
    return numbers(tag, 4, values);
}

TiffDirectory& TiffDirectory::rationals(std::uint16_t tag,
                                        const std::vector<Fraction<std::uint32_t>>& values) {
    return fractions(tag, 5, values);
}

TiffDirectory& TiffDirectory::signedBytes(std::uint16_t tag,
                                          const std::vector<std::int8_t>& values) {
    return numbers(tag, 6, values);
}

TiffDirectory& TiffDirectory::undefined(std::uint16_t tag,
                                        const std::vector<std::uint8_t>& values) {
    return numbers(tag, 7, values);
}

TiffDirectory& TiffDirectory::signedShorts(std::uint16_t tag,
                                           const std::vector<std::int16_t>& values) {
    return numbers(tag, 8, values);
}

TiffDirectory& TiffDirectory::signedLongs(std::uint16_t tag,
                                          const std::vector<std::int32_t>& values) {
    return numbers(tag, 9, values);
}

TiffDirectory& TiffDirectory::signedRationals(std::uint16_t tag,
                                              const std::vector<Fraction<std::int32_t>>& values) {
    return fractions(tag, 10, values);
}

TiffDirectory& TiffDirectory::floats(std::uint16_t tag, const std::vector<float>& values) {
    return numbers(tag, 11, values);
}

TiffDirectory& TiffDirectory::doubles(std::uint16_t tag, const std::vector<double>& values) {
    return numbers(tag, 12, values);
}

TiffDirectory& TiffDirectory::entry(std::uint16_t tag, std::uint16_t type, std::uint32_t count,
                                    const Bytes& value) {
    entries_.push_back({tag, type, count, value});
    return *this;
}

TiffDirectory& TiffDirectory::entryAt(std::uint16_t tag, std::uint16_t type, std::uint32_t count,
                                      std::uint32_t offset) {
    entries_.push_back({tag, type, count, {}, 1, offset});
    return *this;
}

TiffDirectory& TiffDirectory::sub(std::uint16_t tag, const TiffDirectory& directory) {
    entries_.push_back({tag, 4, 1, {}, 1, std::nullopt, &directory});
    return *this;
}

TiffDirectory& TiffDirectory::nest(std::uint16_t tag, const TiffDirectory& directory) {
    const auto nested = std::make_shared<TiffDirectory>(directory);
    sub(tag, *nested);
    entries_.back().nested = nested;
    return *this;
}

TiffDirectory& TiffDirectory::statedCount(std::uint64_t count) {
    statedCount_ = count;
    return *this;
}

TiffDirectory& TiffDirectory::next(std::uint64_t offset) {
    next_ = offset;
    return *this;
}

TiffDirectory& TiffBuilder::image() {
    return images_.empty() ? addImage() : images_.front();
}

TiffDirectory& TiffBuilder::addImage(const TiffDirectory& directory) {
    return images_.emplace_back(directory);
}

TiffDirectory& TiffBuilder::child() {
    return children_.emplace_back();
}

TiffBuilder& TiffBuilder::firstOffset(std::uint64_t offset) {
    firstOffset_ = offset;
    return *this;
}

TiffBuilder& TiffBuilder::version(std::uint16_t version) {
    version_ = version;
    return *this;
}

Bytes TiffBuilder::bytes() const {
    Bytes bytes;
    appendHeader(bytes);
    for (const TiffDirectory* directory : allDirectories()) {
        appendDirectory(bytes, *directory);
    }
    return bytes;
}

std::uint64_t TiffBuilder::positionOf(const TiffDirectory& directory) const {
    std::uint64_t position = flavour_ == Flavour::big ? 16 : 8;
    for (const TiffDirectory* candidate : allDirectories()) {
        if (candidate == &directory) {
            return position;
        }
        position += tableBytes(*candidate);
        for (const TiffDirectory::Entry& entry : candidate->entries_) {
            position += isOutside(entry) ? padded(entry.value.size()) : 0;
        }
    }
    throw std::logic_error("the directory belongs to another builder");
}

std::uint64_t TiffBuilder::entryPosition(const TiffDirectory& directory, std::size_t index) const {
    const bool big = flavour_ == Flavour::big;
    return positionOf(directory) + (big ? 8 : 2) + index * (big ? 20 : 12);
}

std::vector<const TiffDirectory*> TiffBuilder::allDirectories() const {
    std::vector<const TiffDirectory*> all;
    for (const TiffDirectory& directory : images_) {
        all.push_back(&directory);
    }
    for (const TiffDirectory& directory : children_) {
        all.push_back(&directory);
    }
    for (std::size_t i = 0; i < all.size(); ++i) {
        for (const TiffDirectory::Entry& entry : all[i]->entries_) {
            if (entry.nested) {
                all.push_back(entry.nested.get());
            }
        }
    }
    return all;
}

void TiffBuilder::appendHeader(Bytes& bytes) const {
    const bool big = flavour_ == Flavour::big;
    bytes = bytesOf(order_ == Order::big ? "MM" : "II");
    const std::uint16_t bigVersion = order_ == Order::big ? 0x2B00 : 43;
    append(bytes, order_, version_.value_or(big ? bigVersion : std::uint16_t{42}));
    if (big) {
        append(bytes, order_, std::uint16_t{8});
        append(bytes, order_, std::uint16_t{0});
    }
    const std::uint64_t first = images_.empty() ? 0 : positionOf(images_.front());
    appendOffset(bytes, firstOffset_.value_or(first));
}

void TiffBuilder::appendDirectory(Bytes& bytes, const TiffDirectory& directory) const {
    const std::uint64_t count = directory.statedCount_.value_or(directory.entries_.size());
    if (flavour_ == Flavour::big) {
        append(bytes, order_, count);
    } else {
        append(bytes, order_, static_cast<std::uint16_t>(count));
    }
    Bytes values;
    const std::uint64_t valuesBegin = positionOf(directory) + tableBytes(directory);
    for (const TiffDirectory::Entry& entry : directory.entries_) {
        appendEntry(bytes, entry, valuesBegin + values.size());
        if (isOutside(entry)) {
            values = values + valueOf(entry);
            values.resize(padded(values.size()));
        }
    }
    appendOffset(bytes, directory.next_.value_or(successorOf(directory)));
    bytes.insert(bytes.end(), values.begin(), values.end());
}

void TiffBuilder::appendEntry(Bytes& bytes, const TiffDirectory::Entry& entry,
                              std::uint64_t valuePosition) const {
    append(bytes, order_, entry.tag);
    append(bytes, order_, entry.type);
    append(bytes, order_, entry.count);
    std::optional<std::uint64_t> offset = entry.offset;
    if (entry.target != nullptr) {
        offset = positionOf(*entry.target);
    } else if (isOutside(entry)) {
        offset = valuePosition;
    }
    Bytes inlineValue = offset ? Bytes{} : valueOf(entry);
    inlineValue.resize(flavour_ == Flavour::big ? 8 : 4);
    if (flavour_ == Flavour::big || offset) {
        append(bytes, order_, static_cast<std::uint32_t>(offset.value_or(0)));
    }
    if (flavour_ == Flavour::big || !offset) {
        bytes.insert(bytes.end(), inlineValue.begin(), inlineValue.end());
    }
}

Bytes TiffBuilder::valueOf(const TiffDirectory::Entry& entry) const {
    Bytes value = entry.value;
    if (order_ == Order::big) {
        const auto width = static_cast<std::ptrdiff_t>(entry.width);
        for (auto number = value.begin(); number != value.end(); number += width) {
            std::reverse(number, number + width);
        }
    }
    return value;
}

bool TiffBuilder::isOutside(const TiffDirectory::Entry& entry) const {
    return entry.value.size() > (flavour_ == Flavour::big ? 8U : 4U);
}

std::size_t TiffBuilder::tableBytes(const TiffDirectory& directory) const {
    const std::size_t count = directory.entries_.size();
    return flavour_ == Flavour::big ? 8 + count * 20 + 8 : 2 + count * 12 + 4;
}

void TiffBuilder::appendOffset(Bytes& bytes, std::uint64_t offset) const {
    if (flavour_ == Flavour::big) {
        append(bytes, order_, offset);
    } else {
        append(bytes, order_, static_cast<std::uint32_t>(offset));
    }
}

std::uint64_t TiffBuilder::successorOf(const TiffDirectory& directory) const {
    const auto place =
        std::ranges::find(images_, &directory, [](const TiffDirectory& image) { return &image; });
    if (place == images_.end() || std::next(place) == images_.end()) {
        return 0;
    }
    return positionOf(*std::next(place));
}

Bytes jpegWithExif(const Bytes& tiff) {
    Bytes segment{0xFF, 0xE1};
    append(segment, Order::big, static_cast<std::uint16_t>(2 + 6 + tiff.size()));
    return Bytes{0xFF, 0xD8} + segment + Bytes{'E', 'x', 'i', 'f', 0, 0} + tiff + Bytes{0xFF, 0xD9};
}

}  // namespace veltrace::test
