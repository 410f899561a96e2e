#include "record/csv_record.h"
#include "record/json_record.h"
#include "record/record_writer.h"
#include "record/text_record.h"

namespace veltrace::cli {

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
