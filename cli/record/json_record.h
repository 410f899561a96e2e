// Records as JSON.
#pragma once

#include <string>
#include <string_view>

#include "record/record_writer.h"

namespace veltrace::cli {

/// The JSON Schema (draft 2020-12) of a record, as text with a newline at its end: that of
/// record_schema.json.
[[nodiscard]] std::string_view recordSchema();

/// Writes each record as one JSON object in one line, as `recordSchema()` describes it: ndjson is
/// just that, json an array of them.
class JsonRecordWriter : public RecordWriter {
public:
    explicit JsonRecordWriter(const RenderOptions& options);

    void begin(std::string& out) override;
    void record(const Record& record, std::string& out) override;
    void end(std::string& out) override;

private:
    bool isArray_;
    bool listsOmitted_;
    bool isFirst_ = true;
};

}  // namespace veltrace::cli
