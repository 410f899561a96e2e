// Maps tag ids to field names.
#pragma once

#include <cstdint>
#include <string_view>

#include "ifd/ifd_id.h"

namespace veltrace::module {

/// The field name of a tag in a directory of this kind; empty for an unknown tag. Names are static
/// and NUL-terminated. Throws `VeltraceFatalError` for an impossible IFD ID.
[[nodiscard]] std::string_view tagNameFor(IfdId ifdId, std::uint16_t tagId);

}  // namespace veltrace::module
