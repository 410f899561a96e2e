// Renders values as text.
#pragma once

#include <memory>
#include <stdexcept>

#include "zephra/host/value.h"

#include "render/render_options.h"
#include "render/rendering.h"

namespace veltrace::cli {

/// A rendering would exceed its limit.
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

    /// Whether `rendering` has the form that this renderer writes, as far as that protects readers
    /// of the output: bytes of a compromised worker can only be values. Takes a fixed part of the
    /// rendering's memory, however deep it nests.
    [[nodiscard]] virtual bool accepts(const Rendering& rendering) const = 0;

protected:
    Renderer() = default;
};

[[nodiscard]] std::unique_ptr<Renderer> makeRenderer(const RenderOptions& options);

}  // namespace veltrace::cli
