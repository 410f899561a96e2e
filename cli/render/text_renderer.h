// Outputs as text for a person.
#pragma once

#include "render/field_selection.h"
#include "render/renderer.h"

namespace veltrace::cli {

/// Each directory as a heading with aligned "Name  value" lines, numbers with their units; the
/// directories nested in one follow its lines, indented. Empty fields are left out, and with a
/// selection each directory that has none of its fields. The body of an empty output is empty; one
/// line reports directories without any selected field. Every line is indented, so that none can
/// pass for the heading of a file.
class TextRenderer : public Renderer {
public:
    explicit TextRenderer(const RenderOptions& options);

    [[nodiscard]] Rendering render(zephra::Value output) const override;
    [[nodiscard]] bool accepts(const Rendering& rendering) const override;

private:
    [[nodiscard]] bool acceptsLine(std::string_view line) const;

    RenderOptions options_;
    FieldSelection selection_;
};

}  // namespace veltrace::cli
