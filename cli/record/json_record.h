// Records as JSON.
#pragma once

#include <string>

#include "record/record_writer.h"

namespace veltrace::cli {

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
