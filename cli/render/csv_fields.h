// The fields that are columns of csv.
#pragma once

#include <string>
#include <vector>

#include "render/render_options.h"

namespace veltrace::cli {

/// The paths of the selected fields; without a selection those that most people ask for.
[[nodiscard]] std::vector<std::string> csvFields(const RenderOptions& options);

}  // namespace veltrace::cli
