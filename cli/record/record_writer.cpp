#include "record/record_writer.h"

#include <utility>

#include "record/csv_record.h"
#include "record/json_record.h"
#include "render/escape.h"
#include "render/text_style.h"

namespace veltrace::cli {
namespace {

/// Writes each file that was read as a heading with its name and the text of its directories, and
/// an empty line between files. A file that failed has no text: the user gets a message.
class TextRecordWriter : public RecordWriter {
public:
    explicit TextRecordWriter(const RenderOptions& options) : style_(options.colour) {}

    void begin(std::string& /*out*/) override {}

    void record(const Record& record, std::string& out) override {
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

    void end(std::string& /*out*/) override {}

private:
    TextStyle style_;
    bool isFirst_ = true;
};

}  // namespace

std::unique_ptr<RecordWriter> makeRecordWriter(const RenderOptions& options) {
    switch (options.format) {
        case Format::json:
        case Format::ndjson:
            return std::make_unique<JsonRecordWriter>(options);
        case Format::csv:
            return std::make_unique<CsvRecordWriter>(options);
        case Format::text:
            break;
    }
    return std::make_unique<TextRecordWriter>(options);
}

}  // namespace veltrace::cli
