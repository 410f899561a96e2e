// Changes of single numbers in a sound file that mean the same in either byte order.
#pragma once

#include <cstdint>
#include <vector>

#include "support/tiff_builder.h"
#include "sweep/seeds.h"

namespace veltrace::test {

struct Change {
    std::size_t position;
    std::size_t width;  // 1, 2, 4 or 8 bytes
    std::uint64_t value;
};

/// Covered are
/// - every element of every value: all bits clear, 7F..., 80..., all bits set, each bit flipped;
///   of the header of BigTIFF files the offset size and the padding, and of JPEG files the version
///   and most bytes in front of the header, likewise;
/// - offsets: the first and the next directory, sub-directories, values: positions outside the
///   file, and no next directory;
/// - entry counts of 0 and beyond the file; counts of 0, of one less, and beyond any file;
/// - tag ids: known and unknown ones, of every treatment; types: those of the same element size,
///   and those that do not exist.
/// Changes that make the module read a number with another width, or bytes that are no number, are
/// left out: the two files would differ in what is read. So are versions of TIFF files, which
/// decide on the format, and lengths of JPEG segments, which lead into numbers.
[[nodiscard]] std::vector<Change> changesOf(const Seed& seed);

[[nodiscard]] Bytes changed(const Bytes& content, Order order, const Change& change);

}  // namespace veltrace::test
