// Reads files, one at a time.
#pragma once

#include <string>

#include "zephra/host/host.h"

#include "record/outcome.h"
#include "render/renderer.h"
#include "worker/resource_watch.h"

namespace veltrace::cli {

/// The outcome of a file that needs more memory than there is.
[[nodiscard]] Outcome memoryRanOut();

/// Calls the module for a file, and renders what it returns.
class FileReader {
public:
    /// `renderer` outlives the reader.
    FileReader(zephra::EntryPoint entryPoint, const Renderer& renderer)
        : entryPoint_(std::move(entryPoint)), renderer_(renderer) {}

    /// Never throws, whatever the file contains and when memory runs out.
    [[nodiscard]] Outcome read(const std::string& path);

private:
    [[nodiscard]] Outcome readRegular(const std::string& path);
    void render(Outcome& outcome, const zephra::CallResult& result) const;
    void judge(Outcome& outcome, const zephra::CallResult& result, const std::string& path) const;

    zephra::EntryPoint entryPoint_;
    const Renderer& renderer_;
    MemoryWatch memory_;
};

}  // namespace veltrace::cli
