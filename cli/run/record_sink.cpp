#include "run/record_sink.h"

#include <iostream>
#include <utility>

#include "messages.h"

namespace veltrace::cli {
namespace {

constexpr std::size_t kMaxHeldRecords = 2048;
constexpr std::size_t kMaxHeldBytes = std::size_t{8} << 20;
/// Usual size of a record without its outcome.
constexpr std::size_t kRecordOverhead = std::size_t{16} << 10;
/// Records are written together up to this many bytes.
constexpr std::size_t kMaxUnwritten = std::size_t{64} << 10;
/// Capacity that the buffer keeps between records.
constexpr std::size_t kKeptCapacity = std::size_t{1} << 20;

std::size_t sizeOf(const zephra::Message& message) {
    return sizeof message + message.identifier.size() + message.text.size();
}

std::size_t sizeOf(const Outcome& outcome) {
    const Rendering& rendering = outcome.rendering;
    std::size_t size = sizeof outcome + rendering.body.size() + rendering.nonfinite.size() +
                       rendering.latin1.size() + rendering.omitted.size();
    for (const std::string& cell : rendering.cells) {
        size += sizeof(std::string) + cell.size();
    }
    if (outcome.error) {
        size += sizeOf(*outcome.error);
    }
    for (const zephra::Message& warning : outcome.warnings) {
        size += sizeOf(warning);
    }
    return size;
}

}  // namespace

RecordSink::RecordSink(SinkOptions options, OutputFile& output, Progress& progress)
    : options_(std::move(options)),
      writer_(makeRecordWriter(options_.render)),
      output_(output),
      progress_(progress),
      fieldsSeen_(options_.render.fields.size()) {}

/// Called before the first write: a run that cannot start leaves no output behind.
void RecordSink::begin() {
    if (!std::exchange(hasBegun_, true)) {
        writer_->begin(text_);
    }
}

void RecordSink::expect(std::uint64_t id, std::string path) {
    held_.emplace(id, Held{std::move(path), std::nullopt});
}

void RecordSink::deliver(std::uint64_t id, Outcome outcome) {
    const auto place = held_.find(id);
    heldBytes_ += sizeOf(outcome);
    place->second.outcome = std::move(outcome);
    if (options_.isOrdered) {
        writeNextInOrder();
    } else {
        write(id, std::move(held_.extract(place).mapped()));
    }
}

void RecordSink::writeNextInOrder() {
    while (!held_.empty() && held_.begin()->second.outcome) {
        auto first = held_.extract(held_.begin());
        write(first.key(), std::move(first.mapped()));
    }
}

void RecordSink::write(std::uint64_t id, Held held) {
    const std::size_t size = sizeOf(*held.outcome);
    heldBytes_ -= size;
    const Record record{id, std::move(held.path), std::move(*held.outcome)};
    tally_.add(record.outcome.status);
    for (const std::uint32_t field : record.outcome.rendering.fieldsSeen) {
        fieldsSeen_.at(field) = true;
    }
    const bool hasMessages = record.outcome.error || !record.outcome.warnings.empty();
    const bool writesMessages = options_.writesMessages && hasMessages;
    if (writesMessages) {
        flush();  // on a terminal, messages come before the record that they belong to
    }
    begin();
    if (options_.sharesTerminal || writesMessages) {
        progress_.clear();
    }
    if (options_.writesMessages) {
        writeMessages(std::cerr, record.path, record.outcome);
    }
    text_.reserve(text_.size() + size + kRecordOverhead);  // a string that grows by itself doubles
    writer_->record(record, text_);
    if (options_.sharesTerminal || writesMessages || text_.size() >= kMaxUnwritten) {
        flush();
    }
}

void RecordSink::end() {
    begin();
    writer_->end(text_);
    flush();
}

void RecordSink::flush() {
    output_.write(text_);
    text_.clear();
    if (text_.capacity() > kKeptCapacity) {
        text_.shrink_to_fit();
    }
}

bool RecordSink::hasRoom() const {
    return held_.size() < kMaxHeldRecords && heldBytes_ < kMaxHeldBytes;
}

std::vector<std::string> RecordSink::fieldsNeverSeen() const {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < fieldsSeen_.size(); ++i) {
        if (!fieldsSeen_[i]) {
            names.push_back(options_.render.fields[i]);
        }
    }
    return names;
}

}  // namespace veltrace::cli
