// Outputs as the cells of a csv row.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "render/field_selection.h"
#include "render/renderer.h"

namespace veltrace::cli {

/// The paths of the selected fields; without a selection those that most people need.
[[nodiscard]] std::vector<std::string> csvFields(const RenderOptions& options);

/// Renders an output as cells: the number of directories, then one text for each field of
/// `csvFields`. A path that reaches several values has all of them, see `appendCsvValue`, with ";"
/// between them; blank ones are left out.
class CsvRenderer : public Renderer {
public:
    explicit CsvRenderer(const RenderOptions& options);

    [[nodiscard]] Rendering render(zephra::Value output) const override;
    [[nodiscard]] bool accepts(const Rendering& rendering) const override;

private:
    using Path = std::vector<std::string>;

    std::vector<Path> paths_;
    FieldSelection selection_;
    std::size_t maxOutput_;
};

}  // namespace veltrace::cli
