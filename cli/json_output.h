// Results as JSON.
#pragma once

#include <ostream>
#include <string_view>

#include "output_writer.h"

namespace veltrace::cli {

/// Prints one JSON array with an object per file, each on a line of its own:
/// {"path", "status": "ok" | "warned" | "error", "error": {"id", "text"} | null,
/// "warnings": [{"id", "text"}, ...], "info": [one object per directory]}.
/// Texts of messages are as the module sent them; values are as `writeJson` says.
class JsonOutput : public OutputWriter {
public:
    explicit JsonOutput(std::ostream& out) : out_(out) {}

    void begin() override;
    void file(std::string_view path, const zephra::CallResult& result) override;
    void end() override;

private:
    std::ostream& out_;
    bool isFirst_ = true;
};

}  // namespace veltrace::cli
