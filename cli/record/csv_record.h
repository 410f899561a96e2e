// Records as rows of csv.
#pragma once

#include <string_view>
#include <vector>

#include "record/record_writer.h"

namespace veltrace::cli {

/// `text` as one cell (RFC 4180): if it has a comma, a quote, a line end or an outer blank, in
/// double quotes, with quotes doubled. A text that a spreadsheet could interpret as a formula,
/// because it begins with = + - or @ and is not a number, gets an apostrophe before it.
[[nodiscard]] std::string csvCell(std::string_view text);

/// Writes a line of column names, then a row for each file, also for files that failed: path,
/// status, identifier of the error, number of warnings, number of directories, and the fields of
/// `csvFields`. Lines end with a newline alone.
class CsvRecordWriter : public RecordWriter {
public:
    explicit CsvRecordWriter(const RenderOptions& options);

    void begin(std::string& out) override;
    void record(const Record& record, std::string& out) override;
    void end(std::string& /*out*/) override {}

private:
    std::vector<std::string> fields_;
};

}  // namespace veltrace::cli
