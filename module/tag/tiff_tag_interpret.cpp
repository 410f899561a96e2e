// Interprets the decoded values of a few tags.
#include "entry/errors.h"
#include "entry/message.h"
#include "tag/integer_code.h"
#include "tag/tag_id.h"
#include "tag/tiff_tag.h"
#include "tag/word_tables.h"

namespace veltrace::module {

namespace {

// Codes 1 to 5 of GrayResponseUnit (TIFF 6.0, section 8).
constexpr double kGrayResponseMultipliers[] = {0.1, 0.01, 0.001, 0.0001, 0.00001};

}  // namespace

void TiffTag::processSpecificTags() {
    switch (ifdId_) {
        case IfdId::image:
        case IfdId::exif:
            applySpecificTreatment();
            return;
        case IfdId::gps:
        case IfdId::interoperability:
            return;
    }
    throw VeltraceFatalError{"ZEPHRA:veltrace:processSpecificTags:unrecognizedIfdId",
                             message("Did not recognize IFD ID ", number(ifdId_), '\n')};
}

void TiffTag::applySpecificTreatment() {
    switch (tagId_) {
        case tag_id::kImageDescription:
            // Kept: the only text that loses its terminating NUL.
            if (!rawText_.empty()) {
                rawText_.pop_back();
            }
            return;
        case tag_id::kGrayResponseUnit:
            return applyGrayResponseUnit();
        case tag_id::kXmp:
            return convertXmp();
        case tag_id::kIccProfile:
            outputValues_ = {static_cast<double>(static_cast<std::int64_t>(valueOffset_))};
            return;
        default:
            return applyWord();
    }
}

void TiffTag::applyGrayResponseUnit() {
    const auto value = firstValue();
    if (!value) {
        return;
    }
    const std::int32_t code = integerCode(*value);
    if (code >= 1 && code <= 5) {
        outputValues_.front() = kGrayResponseMultipliers[code - 1];
    } else {
        outputText_ = "Unknown";
    }
}

void TiffTag::convertXmp() {
    outputText_.reserve(outputValues_.size());
    for (const double value : outputValues_) {
        outputText_.push_back(static_cast<char>(integerCode(value) & 0xFF));
    }
}

void TiffTag::applyWord() {
    const WordTable* const words = wordsOf(tagId_);
    const auto value = firstValue();
    if (words != nullptr && value) {
        outputText_ = wordFor(*words, integerCode(*value));
    }
}

}  // namespace veltrace::module
