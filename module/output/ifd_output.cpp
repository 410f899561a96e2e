// The fields of one directory.
#include <numeric>

#include "entry/host_messages.h"
#include "ifd/ifd.h"
#include "output/color_types.h"
#include "tag/host_values.h"
#include "tag/tag_id.h"

namespace veltrace::module {

void IFD::outputColorType(qvArray* structure, std::size_t element) const {
    const std::string_view word =
        has(tag_id::kColormap) ? "indexed" : wordFor(kColorTypes, photometricCode_);
    qvArray* value =
        word.empty() ? qvCreateDoubleScalar(photometricCode_) : qvCreateString(word.data());
    storeField(structure, element, "ColorType", value);
}

void IFD::outputBitDepth(qvArray* structure, std::size_t element) const {
    const double bits = std::accumulate(bitsPerSample_.begin(), bitsPerSample_.end(), 0.0);
    storeField(structure, element, "BitDepth", qvCreateDoubleScalar(bits));
}

void IFD::outputTags(qvArray* structure, std::size_t element) {
    for (TiffTag& tag : knownTags_) {
        storeField(structure, element, tag.name().c_str(), tag.outputValue());
    }
    if (!unknownTags_.empty()) {
        outputUnknownTags(structure, element);
    }
}

void IFD::outputUnknownTags(qvArray* structure, std::size_t element) const {
    constexpr const char* kFieldNames[] = {"ID", "Offset", "Value"};
    const std::size_t dimensions[] = {unknownTags_.size(), 1};
    qvArray* list = qvCreateStructArray(std::size(dimensions), dimensions,
                                        static_cast<int>(std::size(kFieldNames)), kFieldNames);
    if (list == nullptr) {
        raiseHostError("ZEPHRA:veltrace:IFDSet:unknownTags:infoStructAllocationFailure",
                       "Could not allocate enough memory for the list of unknown tags.");
    }
    for (std::size_t i = 0; i < unknownTags_.size(); ++i) {
        unknownTags_[i].outputUnknown(list, i);
    }
    storeField(structure, element, "UnknownTags", list);
}

}  // namespace veltrace::module
