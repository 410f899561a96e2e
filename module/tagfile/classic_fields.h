// The count and offset fields that classic TIFF and the TIFF block of a JPEG file share.
#pragma once

#include <cstddef>
#include <cstdint>

namespace veltrace::module {

class TagFile;

/// Reads a 2-byte entry count at the current position into the low 32 bits of `count`; the high
/// half is not written. Returns the number of items read, 1 or 0.
std::size_t readClassicCount(TagFile& file, std::uint64_t* count);

/// Reads a 4-byte offset at the current position, widened with zeros. Returns as above.
std::size_t readClassicOffset(TagFile& file, std::uint64_t* offset);

}  // namespace veltrace::module
