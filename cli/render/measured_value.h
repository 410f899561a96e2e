// Numbers as text, with their units.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "zephra/host/value.h"

namespace veltrace::cli {

/// The shortest text that reads back as `number`; whole numbers below 1e16 have neither fraction
/// nor exponent. Others are "NaN", "Infinity" and "-Infinity".
[[nodiscard]] std::string exactNumber(double number);

/// `number` for a person: whole numbers as `exactNumber`, others to seven digits. More digits mean
/// nothing for a quotient of two integers or for a single-precision number.
[[nodiscard]] std::string briefNumber(double number);

/// The numbers of field `field` of element `element` with the unit that the format standards define
/// for it: `0.008 s (1/125 s)`, `47° 22' 11.9" N`. A unit that another field of the element names
/// is left out where that field is missing. Nothing for a field without a unit, and for one with
/// another count of numbers than its unit has.
[[nodiscard]] std::optional<std::string> measured(zephra::Value directories, std::size_t element,
                                                  std::size_t field);

}  // namespace veltrace::cli
