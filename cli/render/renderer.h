// From values to text.
#pragma once

#include <memory>
#include <stdexcept>

#include "zephra/host/value.h"

#include "render/render_options.h"
#include "render/rendering.h"

namespace veltrace::cli {

/// That a rendering would have more bytes than it may.
class OutputTooLarge : public std::length_error {
public:
    OutputTooLarge() : std::length_error("the output is too large") {}
};

/// Renders the outputs of the module in one format. Values may nest thousands deep.
class Renderer {
public:
    virtual ~Renderer() = default;
    Renderer(const Renderer&) = delete;
    Renderer& operator=(const Renderer&) = delete;

    /// `output` is a structure array with one element per directory, or empty. Throws
    /// OutputTooLarge, std::bad_alloc.
    [[nodiscard]] virtual Rendering render(zephra::Value output) const = 0;

    /// Whether `rendering` is as this renderer makes it, as far as that protects whoever reads the
    /// output: what a damaged process sends must not pass for more than a value. Costs no more
    /// memory than a fixed part of the rendering, however deep it nests.
    [[nodiscard]] virtual bool accepts(const Rendering& rendering) const = 0;

protected:
    Renderer() = default;
};

[[nodiscard]] std::unique_ptr<Renderer> makeRenderer(const RenderOptions& options);

}  // namespace veltrace::cli
