// What becomes of the values of single tags in image and Exif directories.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "grid/expected.h"

namespace veltrace::test {

/// The values of a tag, of which `word` is shown if it is not empty, else `text`, else `numbers`.
struct Shown {
    std::vector<double> numbers;
    std::string text;
    std::string word;
};

/// Truncated toward zero; -2147483648 for NaN and whatever does not fit 32 bits.
[[nodiscard]] std::int64_t codeOf(double number);

/// `offset` is that of the value, 0 inside an entry.
void treat(std::uint16_t tag, double offset, Shown& shown);

[[nodiscard]] Expected colormapOf(const std::vector<double>& numbers);
[[nodiscard]] Expected sampleFormatOf(const std::vector<double>& numbers);
/// ColorType of an image without colour map.
[[nodiscard]] Expected colorTypeOf(std::int64_t photometric);

}  // namespace veltrace::test
