// Files of a known size and shape to measure with.
#pragma once

#include <cstddef>

#include "support/bytes.h"
#include "support/tiff_builder.h"

namespace veltrace::bench {

using test::Bytes;
using test::Order;

/// What the numbers of a value are.
enum class ValueType { shorts, longs, rationals, doubles };

// Every function gives the same bytes every time. Files are classic TIFF unless stated.

/// A main chain of `directories` pages as a fax machine writes them: 12 entries, the two
/// resolutions outside their entries.
[[nodiscard]] Bytes chain(std::size_t directories);

/// One directory of `entries` entries, at most 65,535, each an unknown private tag with one SHORT
/// inside the entry.
[[nodiscard]] Bytes wideDirectory(std::size_t entries);

/// One directory with one known tag of `count` values (34264, ModelTransformationTag).
[[nodiscard]] Bytes values(ValueType type, std::size_t count, Order order);

// Readers of images refuse a directory without pixels. These two have a strip of them, in the nine
// entries of a gray image.

/// `wideDirectory` of `entries` entries, the nine among them.
[[nodiscard]] Bytes wideImage(std::size_t entries);
/// `values` behind the nine.
[[nodiscard]] Bytes imageWithValues(ValueType type, std::size_t count, Order order);

/// An image directory with `depth` Exif directories, each inside the one before.
[[nodiscard]] Bytes nesting(std::size_t depth);

/// A BigTIFF file of one directory as published: little-endian, 12 entries, all values inside.
[[nodiscard]] Bytes bigPage();

/// A photograph: an image directory of 10 entries, Exif of 24, GPS of 8, with texts and rationals
/// outside their entries. `number` is part of a text, so that files differ.
[[nodiscard]] Bytes photograph(Order order, std::size_t number);
/// The same with pixels in one strip: an image directory of 16 entries.
[[nodiscard]] Bytes wholePhotograph(Order order, std::size_t number);
/// A photograph in the APP1 segment of a JPEG file.
[[nodiscard]] Bytes jpegPhotograph(Order order, std::size_t number);

}  // namespace veltrace::bench
