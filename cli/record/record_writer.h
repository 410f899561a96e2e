// Records as the formats write them.
#pragma once

#include <memory>
#include <string>

#include "record/record.h"
#include "render/render_options.h"

namespace veltrace::cli {

/// Writes the records of a run in one format: begin, record for each record, end. Each appends to
/// `out`, which the caller empties.
class RecordWriter {
public:
    virtual ~RecordWriter() = default;
    RecordWriter(const RecordWriter&) = delete;
    RecordWriter& operator=(const RecordWriter&) = delete;

    virtual void begin(std::string& out) = 0;
    virtual void record(const Record& record, std::string& out) = 0;
    virtual void end(std::string& out) = 0;

protected:
    RecordWriter() = default;
};

[[nodiscard]] std::unique_ptr<RecordWriter> makeRecordWriter(const RenderOptions& options);

}  // namespace veltrace::cli
