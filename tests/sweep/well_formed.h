// What every output is, whatever the file.
#pragma once

#include <string>

#include "zephra/host/value.h"

namespace veltrace::test {

/// What is wrong with an output of the module, in words; empty when nothing is. Sound is an empty
/// 0 x 0 double array, or an N x 1 structure whose first `defaultFields` fields are the default
/// ones in order, with sound structures in it.
[[nodiscard]] std::string flawOf(zephra::Value output, std::size_t defaultFields);

}  // namespace veltrace::test
