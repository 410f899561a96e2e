#include "tag/tiff_tag.h"

#include "tag/tag_dictionary.h"

namespace veltrace {

std::optional<double> TiffTag::firstValue() const {
    if (outputValues_.empty()) {
        return std::nullopt;
    }
    return outputValues_.front();
}

void TiffTag::getTagName() {
    name_ = tagNameFor(ifdId_, tagId_);
}

}  // namespace veltrace
