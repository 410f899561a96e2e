#include "readers/libtiff_values.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace veltrace::bench {

bool LibtiffValues::takeOwn(FieldConvention field) {
    switch (field.convention) {
        case Convention::oneShort:
            return takeOne<std::uint16_t>(field.tag);
        case Convention::oneLong:
            return takeOne<std::uint32_t>(field.tag);
        case Convention::oneFloat:
            return takeOne<float>(field.tag);
        case Convention::oneDouble:
            return takeOne<double>(field.tag);
        case Convention::twoShorts:
            return takeTwoShorts(field.tag);
        case Convention::sixFloats: {
            const float* values = nullptr;
            const bool isThere = TIFFGetField(tiff_, field.tag, &values) != 0;
            append<float>(values, isThere ? 6 : 0);
            return isThere;
        }
        case Convention::offsets:
            return takeOffsets(field.tag);
        case Convention::colourTables:
            return takeTables(field.tag, false);
        case Convention::transferTable:
            return takeTables(field.tag, true);
        case Convention::countedShorts:
            return takeCounted<std::uint16_t, std::uint16_t>(field.tag);
        case Convention::countedBytes:
            return takeCounted<std::uint32_t, std::uint8_t>(field.tag);
        case Convention::countedOffsets:
            return takeCounted<std::uint16_t, std::uint64_t>(field.tag);
        case Convention::text: {
            const char* text = nullptr;
            return TIFFGetField(tiff_, field.tag, &text) != 0;
        }
    }
    return false;
}

// As the library's own printing of a directory does it; no text describes these rules.
bool LibtiffValues::takeListed(std::uint32_t tag) {
    const TIFFField* field = TIFFFieldWithTag(tiff_, tag);
    if (field == nullptr) {
        return false;
    }
    if (TIFFFieldPassCount(field) != 0) {
        return takePassedCount(tag, field);
    }
    if (tag == TIFFTAG_DOTRANGE) {
        return takeTwoShorts(tag);
    }
    const int stated = TIFFFieldReadCount(field);
    if (TIFFFieldDataType(field) == TIFF_ASCII || stated != 1) {
        const void* values = nullptr;
        const bool isThere = TIFFGetField(tiff_, tag, &values) != 0;
        const int count = stated == TIFF_SPP ? shortOf(TIFFTAG_SAMPLESPERPIXEL) : stated;
        // Of a list without a count only the first is known to be there.
        take(values, isThere ? static_cast<std::size_t>(std::max(count, 1)) : 0, field);
        return isThere;
    }
    alignas(8) std::array<unsigned char, 8> value{};
    const bool isThere = TIFFGetField(tiff_, tag, value.data()) != 0;
    take(value.data(), isThere ? 1 : 0, field);
    return isThere;
}

bool LibtiffValues::takePassedCount(std::uint32_t tag, const TIFFField* field) {
    const void* values = nullptr;
    std::uint32_t longCount = 0;
    std::uint16_t shortCount = 0;
    const bool isLong = TIFFFieldReadCount(field) == TIFF_VARIABLE2;
    const int isThere = isLong ? TIFFGetField(tiff_, tag, &longCount, &values)
                               : TIFFGetField(tiff_, tag, &shortCount, &values);
    take(values, isLong ? longCount : shortCount, field);
    return isThere != 0;
}

template <class Number>
bool LibtiffValues::takeOne(std::uint32_t tag) {
    Number value{};
    const bool isThere = TIFFGetField(tiff_, tag, &value) != 0;
    append<Number>(&value, isThere ? 1 : 0);
    return isThere;
}

template <class Count, class Number>
bool LibtiffValues::takeCounted(std::uint32_t tag) {
    Count count = 0;
    const Number* values = nullptr;
    const bool isThere = TIFFGetField(tiff_, tag, &count, &values) != 0;
    append<Number>(values, isThere ? count : 0);
    return isThere;
}

bool LibtiffValues::takeTwoShorts(std::uint32_t tag) {
    std::array<std::uint16_t, 2> pair{};
    const bool isThere = TIFFGetField(tiff_, tag, &pair[0], &pair[1]) != 0;
    append<std::uint16_t>(pair.data(), isThere ? pair.size() : 0);
    return isThere;
}

bool LibtiffValues::takeOffsets(std::uint32_t tag) {
    const bool isTiled = TIFFIsTiled(tiff_) != 0;
    const bool isOfTiles = tag == TIFFTAG_TILEOFFSETS || tag == TIFFTAG_TILEBYTECOUNTS;
    const std::uint64_t* values = nullptr;
    // One field of the library answers for strips and tiles.
    const bool isThere = isTiled == isOfTiles && TIFFGetField(tiff_, tag, &values) != 0;
    const std::uint32_t count = isTiled ? TIFFNumberOfTiles(tiff_) : TIFFNumberOfStrips(tiff_);
    append<std::uint64_t>(values, isThere ? count : 0);
    return isThere;
}

bool LibtiffValues::takeTables(std::uint32_t tag, bool mayBeOne) {
    std::array<const std::uint16_t*, 3> tables{};
    const bool isThere = TIFFGetField(tiff_, tag, &tables[0], &tables[1], &tables[2]) != 0;
    const std::uint16_t bits = shortOf(TIFFTAG_BITSPERSAMPLE);
    if (!isThere || bits > 16) {
        return isThere;
    }
    for (const std::uint16_t* table : tables) {
        // A single transfer function leaves the other pointers alone.
        append<std::uint16_t>(table, table != nullptr ? std::size_t{1} << bits : 0);
        if (mayBeOne && shortOf(TIFFTAG_SAMPLESPERPIXEL) == 1) {
            break;
        }
    }
    return true;
}

std::uint16_t LibtiffValues::shortOf(std::uint32_t tag) const {
    std::uint16_t value = 0;
    TIFFGetFieldDefaulted(tiff_, tag, &value);
    return value;
}

void LibtiffValues::take(const void* values, std::size_t count, const TIFFField* field) {
    const bool isWide = TIFFFieldSetGetSize(field) == 8;
    switch (TIFFFieldDataType(field)) {
        case TIFF_BYTE:
        case TIFF_UNDEFINED:
            return append<std::uint8_t>(values, count);
        case TIFF_SBYTE:
            return append<std::int8_t>(values, count);
        case TIFF_SHORT:
            return append<std::uint16_t>(values, count);
        case TIFF_SSHORT:
            return append<std::int16_t>(values, count);
        case TIFF_LONG:
        case TIFF_IFD:
            return append<std::uint32_t>(values, count);
        case TIFF_SLONG:
            return append<std::int32_t>(values, count);
        case TIFF_LONG8:
        case TIFF_IFD8:
            return append<std::uint64_t>(values, count);
        case TIFF_SLONG8:
            return append<std::int64_t>(values, count);
        case TIFF_RATIONAL:
        case TIFF_SRATIONAL:
        case TIFF_FLOAT:
        case TIFF_DOUBLE:
            return isWide ? append<double>(values, count) : append<float>(values, count);
        case TIFF_NOTYPE:
        case TIFF_ASCII:
            return;
    }
}

template <class Number>
void LibtiffValues::append(const void* values, std::size_t count) {
    const std::size_t start = numbers_->size();
    numbers_->resize(start + count);
    for (std::size_t i = 0; i < count; ++i) {
        Number number{};
        std::memcpy(&number, static_cast<const char*>(values) + i * sizeof number, sizeof number);
        (*numbers_)[start + i] = static_cast<double>(number);
    }
}

}  // namespace veltrace::bench
