#include "tag/tiff_tag.h"

#include <algorithm>

#include "tag/integer_code.h"
#include "tag/tag_dictionary.h"
#include "tag/tag_id.h"

namespace veltrace::module {

std::vector<double> TiffTag::rawValues() const {
    std::vector<double> values(value_.rawCount());
    value_.copyRaw(values.data());
    return values;
}

std::vector<double> TiffTag::outputValues() const {
    std::vector<double> values(outputCount());
    copyOutputValues(values.data());
    return values;
}

std::size_t TiffTag::outputCount() const {
    return reported_.get() != nullptr ? reported_.get()->size() : value_.outputCount();
}

void TiffTag::copyOutputValues(double* numbers) const {
    if (reported_.get() != nullptr) {
        std::ranges::copy(*reported_.get(), numbers);
    } else {
        value_.copyOutput(numbers);
    }
}

std::optional<double> TiffTag::firstValue() const {
    if (outputCount() == 0) {
        return std::nullopt;
    }
    return reported_.get() != nullptr ? reported_.get()->front() : value_.firstOutput();
}

std::string_view TiffTag::rawText() const {
    std::string_view text = value_.text();
    // Kept: the only text that loses its terminating NUL.
    if (tagId_ == tag_id::kImageDescription && isInterpreted() && !text.empty()) {
        text.remove_suffix(1);
    }
    return text;
}

std::string TiffTag::outputText() const {
    return isXmp() ? xmpText() : std::string(word());
}

bool TiffTag::isXmp() const {
    return tagId_ == tag_id::kXmp && isInterpreted();
}

std::string TiffTag::xmpText() const {
    std::string text;
    text.reserve(outputCount());
    for (const double value : outputValues()) {
        text.push_back(static_cast<char>(integerCode(value) & 0xFF));
    }
    return text;
}

void TiffTag::getTagName() {
    name_ = tagNameFor(ifdId_, tagId_).data();
}

}  // namespace veltrace::module
