// Numbers with their units.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "zephra/host/value.h"

namespace veltrace::cli {

/// The numbers of field `field` of element `element` with the unit that the format standards define
/// for it: `0.008 s (1/125 s)`, `47° 22' 11.9" N`. What another field of the element says of the
/// unit is taken from there, and nothing is made up where that is missing. Nothing for a field
/// without a unit, and for one that does not hold as many numbers as it should.
[[nodiscard]] std::optional<std::string> measured(zephra::Value directories, std::size_t element,
                                                  std::size_t field);

}  // namespace veltrace::cli
