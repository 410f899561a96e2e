// Text pictures of what was read, for debugging.
#pragma once

#include <ostream>

namespace veltrace::module {

class IFD;
class IFDSet;
class TagFile;
class TiffTag;

// Each writes its object and what that object owns, down to every tag, flushes and returns the
// stream. Texts of the file go out byte for byte, control characters included. Numbers are decimal,
// with a point and without grouping, whatever the stream's format flags and locale say, and the
// stream gets both back.

/// The file, the reader's state and, once read, the main chain.
std::ostream& operator<<(std::ostream& stream, const TagFile& file);

/// Every directory of a chain, and the chain's field names in ascending order of tag ids.
std::ostream& operator<<(std::ostream& stream, const IFDSet& ifdSet);

/// The known tags of a directory, then its unknown ones.
std::ostream& operator<<(std::ostream& stream, const IFD& ifd);

/// A tag as its entry states it, its numbers as decoded and as reported, and its sub-directory.
/// These numbers have eight significant digits, a precision that the stream keeps.
std::ostream& operator<<(std::ostream& stream, const TiffTag& tag);

}  // namespace veltrace::module
