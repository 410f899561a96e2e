// From tag id to field name.
#pragma once

#include <cstdint>
#include <string_view>

#include "ifd/ifd_id.h"

namespace veltrace::module {

/// The field name of a tag in a directory of this kind; empty when the dictionary does not know
/// it. A name is static and has a NUL after its last character. Throws `VeltraceFatalError` for an
/// impossible IFD ID.
[[nodiscard]] std::string_view tagNameFor(IfdId ifdId, std::uint16_t tagId);

}  // namespace veltrace::module
