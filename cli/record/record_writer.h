// Records in each format.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "record/outcome.h"
#include "render/render_options.h"

namespace veltrace::cli {

/// A file and its outcome.
struct Record {
    std::uint64_t id = 0;  ///< position of the file among all inputs, from 0
    std::string path;      ///< any bytes, as they were given
    Outcome outcome;
};

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
