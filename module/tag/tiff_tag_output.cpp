// Converts a tag to its host value.
#include <algorithm>
#include <string_view>

#include "entry/host_messages.h"
#include "entry/message.h"
#include "ifd/ifd_set.h"
#include "tag/host_values.h"
#include "tag/integer_code.h"
#include "tag/tag_id.h"
#include "tag/tiff_tag.h"
#include "tag/word_tables.h"

namespace veltrace::module {

namespace {

// Literals end in a NUL, so the view's data is a C string.
qvArray* wordString(std::string_view word) {
    return qvCreateString(word.data());
}

qvArray* sampleFormatWord(double value) {
    return wordString(wordFor(kSampleFormat, integerCode(value)));
}

}  // namespace

qvArray* TiffTag::outputValue() {
    if (tagId_ == tag_id::kSampleFormat) {
        return sampleFormatOutput();
    }
    if (tagId_ == tag_id::kColormap) {
        return colormapOutput();
    }
    if (IFDSet* chain = subDirectory_.get()) {
        return chain->outputValue();
    }
    if (!outputText_.empty()) {
        return charRow(outputText_);
    }
    if (!rawText_.empty()) {
        return charRow(rawText_);
    }
    return outputValues_.empty() ? nullptr : numericOutput();
}

qvArray* TiffTag::numericOutput() const {
    // Kept: rows for two tags, columns for all others.
    const bool isRow = tagId_ == tag_id::kBitsPerSample || tagId_ == tag_id::kMaxSampleValue;
    const std::size_t count = outputValues_.size();
    qvArray* numbers =
        isRow ? doubleMatrix(1, count, outputValues_) : doubleMatrix(count, 1, outputValues_);
    if (numbers == nullptr) {
        // Kept: no space before the name.
        raiseHostError(
            "ZEPHRA:veltrace:TiffTag:numericAllocationFailure",
            message("Could not allocate enough memory for the output array for tag", name_, ".\n"));
    }
    return numbers;
}

qvArray* TiffTag::colormapOutput() {
    if (outputValues_.empty()) {
        return nullptr;
    }
    std::ranges::for_each(outputValues_, [](double& value) { value /= 65535.0; });
    // TIFF 6.0, section 5: all reds, then all greens, then all blues.
    qvArray* colormap = doubleMatrix(outputValues_.size() / 3, 3, outputValues_);
    if (colormap == nullptr) {
        raiseHostError("ZEPHRA:veltrace:tifftag:colormapAllocationFailure",
                       "Could not allocate memory for Colormap tag value.");
    }
    return colormap;
}

qvArray* TiffTag::sampleFormatOutput() const {
    const auto outOfRange = [](double value) { return value < 1.0 || value > 6.0; };
    if (std::ranges::any_of(outputValues_, outOfRange)) {
        return wordString(kSampleFormat.fallback);
    }
    if (outputValues_.size() == 1) {
        return sampleFormatWord(outputValues_.front());
    }
    const std::size_t dimensions[] = {outputValues_.size(), 1};
    qvArray* words = qvCreateCellArray(std::size(dimensions), dimensions);
    if (words == nullptr) {
        raiseHostError("ZEPHRA:veltrace:processSampleFormat",
                       "Could not allocate memory for SampleFormat tag value.");
    }
    for (std::size_t i = 0; i < outputValues_.size(); ++i) {
        qvSetCell(words, i, sampleFormatWord(outputValues_[i]));
    }
    return words;
}

void TiffTag::outputUnknown(qvArray* unknownTags, std::size_t index) const {
    storeField(unknownTags, index, "ID", qvCreateDoubleScalar(tagId_));
    storeField(unknownTags, index, "Offset",
               qvCreateDoubleScalar(static_cast<double>(valueOffset_)));
    storeField(unknownTags, index, "Value", unknownValue());
}

qvArray* TiffTag::unknownValue() const {
    if (!rawText_.empty()) {
        qvArray* text = qvCreateString(rawText_.c_str());  // ends at the first NUL
        if (text == nullptr) {
            raiseHostError("ZEPHRA:veltrace:TiffTag:unknownTag:charAllocationFailure",
                           message("Could not allocate enough memory for the output char "
                                   "array for the unknown tag with ID ",
                                   tagId_, ".\n"));
        }
        return text;
    }
    if (!outputValues_.empty()) {
        qvArray* numbers = doubleMatrix(outputValues_.size(), 1, outputValues_);
        if (numbers == nullptr) {
            raiseHostError("ZEPHRA:veltrace:TiffTag:unknownTag:numericAllocationFailure",
                           message("Could not allocate enough memory for the output numeric "
                                   "array for the unknown tag with ID ",
                                   tagId_, ".\n"));
        }
        return numbers;
    }
    // Kept: no space before "is".
    issueHostWarning(
        "ZEPHRA:veltrace:unknownTagPayloadState",
        message("Tag data for unknown tag ID ", tagId_, "is in an unrecognized state.\n"));
    return nullptr;
}

}  // namespace veltrace::module
