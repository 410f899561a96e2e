#include "run/record_sink.h"

#include <iostream>
#include <utility>

#include "messages.h"

namespace veltrace::cli {
namespace {

constexpr std::size_t kMostHeldRecords = 2048;
constexpr std::size_t kMostHeldBytes = std::size_t{8} << 20;
/// What a record has besides its outcome, most of the time.
constexpr std::size_t kMoreThanOutcome = std::size_t{16} << 10;
/// Records are written together up to this many bytes.
constexpr std::size_t kMostUnwritten = std::size_t{64} << 10;
/// What the buffer keeps between records.
constexpr std::size_t kKeptCapacity = std::size_t{1} << 20;

std::size_t sizeOf(const zephra::Message& message) {
    return sizeof message + message.identifier.size() + message.text.size();
}

std::size_t sizeOf(const Outcome& outcome) {
    const Rendering& rendering = outcome.rendering;
    std::size_t size = sizeof outcome + rendering.body.size() + rendering.nonfinite.size() +
                       rendering.latin1.size() + rendering.omitted.size();
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

/// Not before there is something to write: a run that cannot start leaves nothing behind.
void RecordSink::begin() {
    if (!std::exchange(hasBegun_, true)) {
        writer_->begin(text_);
    }
}

void RecordSink::expect(std::uint64_t sequence, std::string path) {
    held_.emplace(sequence, Held{std::move(path), std::nullopt});
}

void RecordSink::deliver(std::uint64_t sequence, Outcome outcome) {
    const auto place = held_.find(sequence);
    heldBytes_ += sizeOf(outcome);
    place->second.outcome = std::move(outcome);
    if (options_.isOrdered) {
        writeThoseInTurn();
    } else {
        write(sequence, std::move(held_.extract(place).mapped()));
    }
}

void RecordSink::writeThoseInTurn() {
    while (!held_.empty() && held_.begin()->second.outcome) {
        auto first = held_.extract(held_.begin());
        write(first.key(), std::move(first.mapped()));
    }
}

void RecordSink::write(std::uint64_t sequence, Held held) {
    const std::size_t size = sizeOf(*held.outcome);
    heldBytes_ -= size;
    const Record record{sequence, std::move(held.path), std::move(*held.outcome)};
    tally_.add(record.outcome.status);
    for (const std::uint32_t field : record.outcome.rendering.fieldsSeen) {
        fieldsSeen_.at(field) = true;
    }
    const bool hasMessages = record.outcome.error || !record.outcome.warnings.empty();
    const bool tells = options_.tellsMessages && hasMessages;
    if (tells) {
        flush();  // where both go to one place, messages come before the record that they belong to
    }
    begin();
    if (options_.sharesTerminal || tells) {
        progress_.clear();
    }
    if (options_.tellsMessages) {
        writeMessages(std::cerr, record.path, record.outcome);
    }
    text_.reserve(text_.size() + size + kMoreThanOutcome);  // growing by itself it would double
    writer_->record(record, text_);
    if (options_.sharesTerminal || tells || text_.size() >= kMostUnwritten) {
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
    return held_.size() < kMostHeldRecords && heldBytes_ < kMostHeldBytes;
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
