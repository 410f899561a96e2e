// The host release that this module was built for.
#pragma once

namespace veltrace::module {

/// A constant text for tools that inspect the library; the module never calls it.
[[nodiscard]] const char* hostRelease();

}  // namespace veltrace::module
