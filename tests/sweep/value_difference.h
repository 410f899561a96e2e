// Comparison of whole outputs.
#pragma once

#include <string>

#include "zephra/host/value.h"

namespace veltrace::test {

/// Where two values differ, as a path of fields and elements with what differs there; empty when
/// they do not. Field names and their order, classes, dimensions and contents count; the values of
/// the fields "ByteOrder" and "FormatSignature" do not. NaN equals NaN.
[[nodiscard]] std::string differenceOf(zephra::Value left, zephra::Value right);

}  // namespace veltrace::test
