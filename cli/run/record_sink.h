// Writes records to the output, in order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "output_file.h"
#include "record/record_writer.h"
#include "run/progress.h"
#include "run/tally.h"

namespace veltrace::cli {

struct SinkOptions {
    RenderOptions render;
    bool isOrdered = true;
    /// Whether warnings and errors go to standard error, because the format has no place for them.
    bool writesMessages = true;
    /// Whether records and progress go to the same terminal.
    bool sharesTerminal = false;
};

/// Writes records in the order of the inputs, or as they are ready. Keeps those that must wait for
/// earlier ones.
class RecordSink {
public:
    /// `output` and `progress` outlive the sink.
    RecordSink(SinkOptions options, OutputFile& output, Progress& progress);

    /// A file that will have an outcome. Ids ascend.
    void expect(std::uint64_t id, std::string path);
    void deliver(std::uint64_t id, Outcome outcome);
    /// Writes records that wait in the buffer.
    void flush();
    /// Completes the output, also if it has no record.
    void end();

    /// Whether the kept records leave room for another one.
    [[nodiscard]] bool hasRoom() const;
    /// Bytes of the kept outcomes, roughly.
    [[nodiscard]] std::size_t heldBytes() const { return heldBytes_; }

    [[nodiscard]] const Tally& tally() const { return tally_; }
    /// The selected fields that no record had.
    [[nodiscard]] std::vector<std::string> fieldsNeverSeen() const;

private:
    struct Held {
        std::string path;
        std::optional<Outcome> outcome;
    };

    void begin();
    void writeNextInOrder();
    void write(std::uint64_t id, Held held);

    SinkOptions options_;
    std::unique_ptr<RecordWriter> writer_;
    OutputFile& output_;
    Progress& progress_;
    Tally tally_;
    std::map<std::uint64_t, Held> held_;
    std::size_t heldBytes_ = 0;
    std::vector<bool> fieldsSeen_;
    bool hasBegun_ = false;
    std::string text_;
};

}  // namespace veltrace::cli
