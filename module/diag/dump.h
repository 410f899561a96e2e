// Text dumps of what was read, for debugging.
#pragma once

#include <ostream>

namespace veltrace::module {

class IFD;
class IFDSet;
class TagFile;
class TiffTag;

// Each writes its object and everything that it owns, flushes, and returns the stream. Texts of the
// file are written byte for byte, control characters included. Numbers are decimal, with a point
// and without grouping: the stream's format flags and locale are ignored, then restored.

/// The file, the reader's state and, once read, the main chain.
std::ostream& operator<<(std::ostream& stream, const TagFile& file);

/// Every directory of a chain, and the chain's field names in ascending order of tag ids.
std::ostream& operator<<(std::ostream& stream, const IFDSet& ifdSet);

/// The known tags of a directory, then its unknown ones.
std::ostream& operator<<(std::ostream& stream, const IFD& ifd);

/// A tag as its entry states it, its numbers as decoded and as reported, and its sub-directory.
/// Its numbers have eight significant digits; the stream keeps this precision.
std::ostream& operator<<(std::ostream& stream, const TiffTag& tag);

}  // namespace veltrace::module
