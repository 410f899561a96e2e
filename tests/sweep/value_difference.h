// Comparison of whole outputs.
#pragma once

#include <set>
#include <string>
#include <string_view>

#include "zephra/host/value.h"

namespace veltrace::test {

/// Where two values differ, as a path of fields and elements with what differs there; empty when
/// they do not. Field names and their order, classes, dimensions and contents count; the values of
/// the fields in `ignored` do not. NaN equals NaN.
[[nodiscard]] std::string differenceOf(zephra::Value left, zephra::Value right,
                                       const std::set<std::string_view>& ignored = {});

}  // namespace veltrace::test
