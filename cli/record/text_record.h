// Records as text for a person.
#pragma once

#include "record/record_writer.h"
#include "render/text_style.h"

namespace veltrace::cli {

/// Writes, for each file that was read, its name as a heading and the text of its directories, with
/// an empty line between files. Of a file that failed nothing is written: the user gets a message.
class TextRecordWriter : public RecordWriter {
public:
    explicit TextRecordWriter(const RenderOptions& options) : style_(options.colour) {}

    void begin(std::string& /*out*/) override {}
    void record(const Record& record, std::string& out) override;
    void end(std::string& /*out*/) override {}

private:
    TextStyle style_;
    bool isFirst_ = true;
};

}  // namespace veltrace::cli
