// The readers, each made in a file of its own.
#pragma once

#include <memory>
#include <string>

#include "readers/reader.h"

namespace veltrace::bench {

/// The module, called through the host as the command calls it, once for each file. Throws
/// `zephra::LoadError`.
[[nodiscard]] std::unique_ptr<Reader> veltraceReader(const std::string& modulePath);

/// All directories of the main chain, the Exif and GPS directories and the SubIFDs, all tags.
/// libtiff has no public way into Interoperability directories, so they are left out. It follows
/// every SubIFD of a tag, the module only the first. It answers for PlanarConfiguration, and for
/// both resolutions when there is one, whether the file has them or not; of BitsPerSample it
/// returns one value. It maps files into memory, as it does unless told otherwise.
[[nodiscard]] std::unique_ptr<Reader> libtiffReader();
/// The same with files read instead of mapped, which is faster for some.
[[nodiscard]] std::unique_ptr<Reader> unmappedLibtiffReader();

/// All directories of the Exif block, the one of the thumbnail included, without the repairs that
/// libexif offers: those would add entries and leave unknown ones out. It follows pointers and
/// keeps no entry for them.
[[nodiscard]] std::unique_ptr<Reader> libexifReader();

/// All of the Exif data. The library decodes maker notes, IPTC and XMP as well, and
/// cannot be asked not to.
[[nodiscard]] std::unique_ptr<Reader> exiv2Reader();

/// Opens the file as often as the module and reads the same tables and values, by hand, with no
/// messages and no output.
[[nodiscard]] std::unique_ptr<Reader> minimalReader();

}  // namespace veltrace::bench
