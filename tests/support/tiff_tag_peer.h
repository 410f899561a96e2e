// Reaches operations of a tag that no file can reach.
#pragma once

#include <cstdint>

#include "tag/tiff_tag.h"

namespace veltrace::module {

struct TiffTagPeer {
    static void setIfdId(TiffTag& tag, IfdId ifdId) { tag.ifdId_ = ifdId; }
    static void setDataType(TiffTag& tag, std::uint16_t dataType) {
        tag.value_ = TagValue(dataType, 0);
    }
    static void getTagName(TiffTag& tag) { tag.getTagName(); }
    static void processSpecificTags(TiffTag& tag) { tag.processSpecificTags(); }
    static void checkNesting(const TiffTag& tag) { tag.checkNesting(); }
    static void decodeValues(TiffTag& tag) { tag.decodeValues(nullptr); }
};

}  // namespace veltrace::module
