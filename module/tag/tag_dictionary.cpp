#include "tag/tag_dictionary.h"

#include <array>
#include <cstddef>
#include <iterator>

#include "entry/errors.h"
#include "entry/message.h"
#include "tag/gps_tag_names.h"
#include "tag/interoperability_tag_names.h"
#include "tag/main_tag_names.h"

namespace veltrace::module {

namespace {

/// The rows of the large table by tag id: their index + 1, or 0 for an id without one. Nearly every
/// entry of every file asks for such a name, so the answer is a look, not a search.
using RowOfId =
    std::array<std::uint16_t, std::size_t{kMainTagNames[std::size(kMainTagNames) - 1].id} + 1>;

constexpr RowOfId mainRowOfId() {
    RowOfId rows{};
    for (std::size_t i = 0; i < std::size(kMainTagNames); ++i) {
        rows[kMainTagNames[i].id] = static_cast<std::uint16_t>(i + 1);
    }
    return rows;
}

constexpr RowOfId kMainRowOfId = mainRowOfId();

std::string_view mainTagName(std::uint16_t tagId) {
    const std::size_t row = tagId < kMainRowOfId.size() ? kMainRowOfId[tagId] : 0;
    return row != 0 ? kMainTagNames[row - 1].name : std::string_view{""};
}

}  // namespace

std::string_view tagNameFor(IfdId ifdId, std::uint16_t tagId) {
    switch (ifdId) {
        case IfdId::image:
        case IfdId::exif:
            return mainTagName(tagId);
        case IfdId::gps:
            return nameIn(kGpsTagNames, tagId);
        case IfdId::interoperability:
            return nameIn(kInteroperabilityTagNames, tagId);
    }
    throw VeltraceFatalError{"ZEPHRA:veltrace:getTagName:unrecognizedIfdId",
                             message("Did not recognize IFD ID ", number(ifdId), '\n')};
}

}  // namespace veltrace::module
