#include "render/renderer.h"

#include "render/csv_renderer.h"
#include "render/json_renderer.h"
#include "render/text_renderer.h"

namespace veltrace::cli {

std::unique_ptr<Renderer> makeRenderer(const RenderOptions& options) {
    switch (options.format) {
        case Format::json:
        case Format::ndjson:
            return std::make_unique<JsonRenderer>(options);
        case Format::csv:
            return std::make_unique<CsvRenderer>(options);
        case Format::text:
            break;
    }
    return std::make_unique<TextRenderer>(options);
}

}  // namespace veltrace::cli
