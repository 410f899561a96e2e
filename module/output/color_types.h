// The names of the photometric codes in `ColorType`.
#pragma once

#include "tag/tag_id.h"
#include "tag/words.h"

namespace veltrace::module {

// Not the words of the PhotometricInterpretation tag: two grays share a name, and LogL has one.
constexpr Word kColorTypeRows[] = {
    {0, "grayscale"},
    {1, "grayscale"},
    {2, "truecolor"},
    {3, "RGB Palette"},
    {4, "Transparency Mask"},
    {5, "CMYK"},
    {6, "YCbCr"},
    {8, "CIELab"},
    {9, "ICCLab"},
    {10, "ITULab"},
    {32803, "CFA"},
    {32844, "LogL"},
    {32845, "LogLuv"},
    {34892, "LinearRaw"},
};
static_assert(strictlyAscending(kColorTypeRows));

/// A code without a name is reported as its number, so the fallback is empty.
constexpr WordTable kColorTypes{tag_id::kPhotometricInterpretation, kColorTypeRows, ""};

}  // namespace veltrace::module
