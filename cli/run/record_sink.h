// Where records go, in which order.
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
    /// Whether warnings and errors are told on standard error, because the format does not hold
    /// them.
    bool tellsMessages = true;
    /// Whether records appear where progress does.
    bool sharesTerminal = false;
};

/// Writes records: in the order of the inputs, or as they come. Holds on to those whose turn has
/// not come.
class RecordSink {
public:
    /// `output` and `progress` outlive the sink.
    RecordSink(SinkOptions options, OutputFile& output, Progress& progress);

    /// A file that will have an outcome. Sequences ascend.
    void expect(std::uint64_t sequence, std::string path);
    void deliver(std::uint64_t sequence, Outcome outcome);
    /// Writes what is not written yet. Records wait for this, or until there are many of them.
    void flush();
    /// Completes the output, which is then whole also without any record.
    void end();

    /// Whether another record may be expected without holding on to too much.
    [[nodiscard]] bool hasRoom() const;
    /// Bytes of the outcomes that are held, roughly.
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
    void writeThoseInTurn();
    void write(std::uint64_t sequence, Held held);

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
