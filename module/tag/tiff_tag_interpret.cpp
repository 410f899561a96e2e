// From decoded values to what a few tags mean.
#include <utility>

#include "entry/errors.h"
#include "entry/message.h"
#include "tag/integer_code.h"
#include "tag/tag_id.h"
#include "tag/tiff_tag.h"
#include "tag/word_tables.h"

namespace veltrace::module {

namespace {

/// The words of an enumerated tag; null for any other.
const WordTable* wordsOf(std::uint16_t tagId) {
    switch (tagId) {
        case tag_id::kCompression:
            return &kCompression;
        case tag_id::kPhotometricInterpretation:
            return &kPhotometricInterpretation;
        case tag_id::kPlanarConfiguration:
            return &kPlanarConfiguration;
        case tag_id::kResolutionUnit:
            return &kResolutionUnit;
        case tag_id::kPredictor:
            return &kPredictor;
        case tag_id::kInkSet:
            return &kInkSet;
        case tag_id::kJpegProc:
            return &kJpegProc;
        case tag_id::kYCbCrPositioning:
            return &kYCbCrPositioning;
        default:
            return nullptr;
    }
}

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

/// Only tags of these directories mean more than their values.
bool TiffTag::isInterpreted() const {
    return ifdId_ == IfdId::image || ifdId_ == IfdId::exif;
}

void TiffTag::applySpecificTreatment() {
    switch (tagId_) {
        case tag_id::kGrayResponseUnit:
            applyGrayResponseUnit();
            return;
        case tag_id::kIccProfile:
            reported_.set({static_cast<double>(valueOffset_)});
            return;
        default:
            return;
    }
}

void TiffTag::applyGrayResponseUnit() {
    const auto value = firstValue();
    if (!value) {
        return;
    }
    const std::int32_t code = integerCode(*value);
    if (code >= 1 && code <= 5) {
        std::vector<double> values = outputValues();
        values.front() = kGrayResponseMultipliers[code - 1];
        reported_.set(std::move(values));
    }
}

std::string_view TiffTag::word() const {
    const bool isUnknownUnit = tagId_ == tag_id::kGrayResponseUnit && reported_.get() == nullptr;
    const WordTable* const words = wordsOf(tagId_);
    if ((!isUnknownUnit && words == nullptr) || !isInterpreted()) {
        return {};
    }
    const auto value = firstValue();
    if (!value) {
        return {};
    }
    return words != nullptr ? wordFor(*words, integerCode(*value)) : "Unknown";
}

}  // namespace veltrace::module
