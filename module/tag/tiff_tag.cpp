#include "tag/tiff_tag.h"

#include "tag/tag_dictionary.h"

namespace veltrace::module {

std::optional<double> TiffTag::firstValue() const {
    return outputValues_.empty() ? std::nullopt : std::optional(outputValues_.front());
}

void TiffTag::getTagName() {
    name_ = tagNameFor(ifdId_, tagId_);
}

}  // namespace veltrace::module
