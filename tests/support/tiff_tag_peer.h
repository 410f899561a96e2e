// Calls operations of a tag that no file can reach.
#pragma once

#include <cstdint>

#include "tag/tiff_tag.h"

namespace veltrace::module {

struct TiffTagPeer {
    static void setIfdId(TiffTag& tag, IfdId ifdId) { tag.ifdId_ = ifdId; }
    static void setDataType(TiffTag& tag, std::uint16_t dataType) { tag.dataType_ = dataType; }
    static void getTagName(TiffTag& tag) { tag.getTagName(); }
    static void processSpecificTags(TiffTag& tag) { tag.processSpecificTags(); }
    static void checkNesting(const TiffTag& tag) { tag.checkNesting(); }
    static void decodeValues(TiffTag& tag) { tag.decodeValues(nullptr); }
    template <class Visitor>
    static void visitMembers(const TiffTag& tag, const Visitor& visit) {
        visit(tag.rawValues_, tag.outputValues_, tag.rawText_, tag.outputText_, tag.tagId_,
              tag.dataType_, tag.count_, tag.valueOffset_, tag.byteSize_, tag.ifdId_, tag.name_,
              tag.subDirectory_);
    }
};

}  // namespace veltrace::module
