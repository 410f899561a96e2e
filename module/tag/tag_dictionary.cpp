#include "tag/tag_dictionary.h"

#include <algorithm>

#include "entry/errors.h"
#include "entry/message.h"
#include "tag/baseline_tags.h"
#include "tag/gps_tag_names.h"
#include "tag/interoperability_tag_names.h"
#include "tag/main_tag_names.h"

namespace veltrace::module {

namespace {

/// `kBaselineTags` repeats names, so that the readers need not include the dictionary.
constexpr bool namesAgree(const BaselineTag& tag) {
    return nameIn(kMainTagNames, tag.id) == tag.name;
}
static_assert(std::ranges::all_of(kBaselineTags, namesAgree));

}  // namespace

std::string_view tagNameFor(IfdId ifdId, std::uint16_t tagId) {
    switch (ifdId) {
        case IfdId::image:
        case IfdId::exif:
            return nameIn(kMainTagNames, tagId);
        case IfdId::gps:
            return nameIn(kGpsTagNames, tagId);
        case IfdId::interoperability:
            return nameIn(kInteroperabilityTagNames, tagId);
    }
    throw VeltraceFatalError{"ZEPHRA:veltrace:getTagName:unrecognizedIfdId",
                             message("Did not recognize IFD ID ", number(ifdId), '\n')};
}

}  // namespace veltrace::module
