// Values of the directory that libtiff is at.
#pragma once

#include <cstdint>
#include <tiffio.h>
#include <vector>

#include "readers/libtiff_fields.h"

namespace veltrace::bench {

/// Asks libtiff for values and appends all numbers to a list.
class LibtiffValues {
public:
    LibtiffValues(TIFF& tiff, std::vector<double>& numbers) : tiff_(&tiff), numbers_(&numbers) {}

    // Each returns false when the directory does not have the tag.

    [[nodiscard]] bool takeOwn(FieldConvention field);
    /// A tag from the list of those that are not libtiff's own.
    [[nodiscard]] bool takeListed(std::uint32_t tag);

private:
    template <class Number>
    bool takeOne(std::uint32_t tag);
    template <class Count, class Number>
    bool takeCounted(std::uint32_t tag);
    bool takeTwoShorts(std::uint32_t tag);
    bool takeOffsets(std::uint32_t tag);
    bool takeTables(std::uint32_t tag, bool mayBeOne);
    bool takePassedCount(std::uint32_t tag, const TIFFField* field);
    [[nodiscard]] std::uint16_t shortOf(std::uint32_t tag) const;

    /// `count` elements of the type that libtiff keeps the field in.
    void take(const void* values, std::size_t count, const TIFFField* field);
    template <class Number>
    void append(const void* values, std::size_t count);

    TIFF* tiff_;
    std::vector<double>* numbers_;
};

}  // namespace veltrace::bench
