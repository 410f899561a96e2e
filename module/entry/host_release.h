// The host release that this module was built for.
#pragma once

namespace veltrace::module {

/// A constant text. For people who look into the library with a tool: the module never calls it.
[[nodiscard]] const char* hostRelease();

}  // namespace veltrace::module
