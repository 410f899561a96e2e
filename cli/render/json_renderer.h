// Values as JSON.
#pragma once

#include <cstddef>
#include <optional>

#include "render/field_selection.h"
#include "render/renderer.h"

namespace veltrace::cli {

/// Renders an output as one JSON array, nested to any depth that memory allows:
/// - a structure array as a list of objects, a cell array as a list, in index order; fields that
///   are not selected are left out;
/// - characters as one text of their low bytes, NULs included, see `appendText`;
/// - numbers and logicals 1 x 1 as one number or boolean, 1 x n and n x 1 as a flat list, m x n as
///   a list of m rows (further dimensions count as columns), see `appendNumber`; NaN and infinities
///   as null;
/// - an empty place, an empty number or logical array, and a value larger than the user's limit as
///   null; an empty output as [].
///
/// The places in the lists of a rendering are JSON Pointers (RFC 6901) within a record, whose
/// "info" the body is.
class JsonRenderer : public Renderer {
public:
    explicit JsonRenderer(const RenderOptions& options);

    [[nodiscard]] Rendering render(zephra::Value output) const override;
    [[nodiscard]] bool accepts(const Rendering& rendering) const override;

private:
    FieldSelection selection_;
    std::optional<std::size_t> omitLargerThan_;
    std::size_t maxOutput_;
};

}  // namespace veltrace::cli
