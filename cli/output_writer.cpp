#include "output_writer.h"

#include "json_output.h"
#include "text_output.h"

namespace veltrace::cli {

std::unique_ptr<OutputWriter> makeOutputWriter(const Options& options, std::ostream& out) {
    if (options.json) {
        return std::make_unique<JsonOutput>(out);
    }
    return std::make_unique<TextOutput>(out);
}

}  // namespace veltrace::cli
