#include "tag/tag_dictionary.h"

#include "entry/errors.h"
#include "entry/message.h"
#include "tag/gps_tag_names.h"
#include "tag/interoperability_tag_names.h"
#include "tag/main_tag_names.h"

namespace veltrace {

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

}  // namespace veltrace
