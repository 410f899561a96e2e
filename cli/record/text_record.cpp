#include "record/text_record.h"

#include <utility>

#include "render/escape.h"

namespace veltrace::cli {

void TextRecordWriter::record(const Record& record, std::string& out) {
    if (isFailure(record.outcome.status)) {
        return;
    }
    if (!std::exchange(isFirst_, false)) {
        out += '\n';
    }
    out += style_.heading(visible(record.path)) + '\n';
    const std::string& body = record.outcome.rendering.body;
    out += body.empty() ? "  no directories\n" : body;
}

}  // namespace veltrace::cli
