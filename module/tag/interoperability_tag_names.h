// Field names in Interoperability directories (Exif 2.2, section 4.6.7, and DCF).
#pragma once

#include "tag/tag_name.h"

namespace veltrace::module {

constexpr TagName kInteroperabilityTagNames[] = {
    {1, "InteroperabilityIndex"}, {2, "InteroperabilityVersion"}, {4096, "RelatedImageFileFormat"},
    {4097, "RelatedImageWidth"},  {4098, "RelatedImageLength"},
};
static_assert(std::size(kInteroperabilityTagNames) == 5 &&
              strictlyAscending(kInteroperabilityTagNames));

}  // namespace veltrace::module
