// Results as text.
#pragma once

#include <ostream>
#include <string>
#include <string_view>

#include "zephra/host/value.h"

#include "output_writer.h"

namespace veltrace::cli {

/// Prints, for each file that was read, its name and each directory as a heading with aligned
/// "Name  value" lines; the directories nested in one follow its lines, indented. Empty fields are
/// left out. Of a file that failed nothing is printed: its error is on standard error.
class TextOutput : public OutputWriter {
public:
    explicit TextOutput(std::ostream& out) : out_(out) {}

    void begin() override {}
    void file(std::string_view path, const zephra::CallResult& result) override;
    void end() override {}

private:
    void writeDirectories(zephra::Value root);
    void writeHeading(std::string_view label, zephra::Value directories, std::size_t element,
                      std::size_t depth);
    void writeFields(zephra::Value directories, std::size_t element, std::size_t depth);

    std::ostream& out_;
    bool isFirst_ = true;
};

}  // namespace veltrace::cli
