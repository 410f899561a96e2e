// Records: what goes in reads back equal, and nothing that goes in reaches a terminal.
#include <algorithm>
#include <optional>
#include <sstream>
#include <utility>
#include <vector>

#include "zephra/host/host.h"

#include "finding.h"
#include "fuzz_target.h"
#include "info_check.h"
#include "made_value.h"
#include "messages.h"
#include "output_checks.h"
#include "parameters.h"
#include "record/record_writer.h"
#include "render/csv_renderer.h"
#include "render/renderer.h"

namespace veltrace::fuzz {
namespace {

using cli::Format;
using cli::Outcome;
using cli::Record;
using cli::RenderOptions;

// -- What goes in ----------------------------------------------------------------------------

zephra::Message madeMessage(Parameters& parameters) {
    std::string identifier = parameters.text(20);
    return {std::move(identifier), parameters.text(60)};
}

Outcome madeOutcome(Parameters& parameters) {
    Outcome outcome;
    const auto status = static_cast<cli::Status>(parameters.upTo(2 * cli::kStatusCount - 1));
    outcome.status =
        static_cast<std::size_t>(status) < cli::kStatusCount ? status : cli::Status::ok;
    if (isFailure(outcome.status)) {
        outcome.error = madeMessage(parameters);
    }
    for (std::size_t left = parameters.upTo(3); left > 0; --left) {
        outcome.warnings.push_back(madeMessage(parameters));
    }
    outcome.warningsDropped = parameters.flag() ? parameters.value<std::uint64_t>() >> 1U : 0;
    outcome.elapsedMicroseconds = parameters.value<std::uint32_t>();
    return outcome;
}

RenderOptions madeOptions(Parameters& parameters) {
    RenderOptions options;
    for (std::size_t left = parameters.upTo(8) % 4; left > 0; --left) {
        std::string path = madeName(parameters);
        if (parameters.flag()) {
            path += '.' + madeName(parameters);
        }
        options.fields.push_back(std::move(path));
    }
    options.maxValues = parameters.upTo(20);
    if (parameters.flag()) {
        options.omitLargerThan = parameters.upTo(20);
    }
    options.colour = parameters.flag();
    return options;
}

struct Input {
    explicit Input(Parameters& parameters)
        : options(madeOptions(parameters)),
          record{parameters.value<std::uint64_t>(), parameters.text(30), madeOutcome(parameters)},
          limit(parameters.upTo(2000)),
          output(madeOutput(parameters)),
          result(zephra::Host().call([this](int, qvArray* outputs[], int,
                                            const qvArray*[]) { outputs[0] = toArray(output); },
                                     {})) {}

    RenderOptions options;
    Record record;      // not rendered yet
    std::size_t limit;  // bytes of output that would be allowed
    MadeValue output;
    zephra::CallResult result;
};

Record rendered(const Input& input, const RenderOptions& options) {
    Record record = input.record;
    if (!record.outcome.error) {
        const auto renderer = makeRenderer(options);
        record.outcome.rendering = renderer->render(input.result.output());
        require(renderer->accepts(record.outcome.rendering), "a renderer refuses what it has made");
    }
    return record;
}

std::size_t sizeOf(const cli::Rendering& rendering) {
    std::size_t size = rendering.body.size() + rendering.nonfinite.size() +
                       rendering.latin1.size() + rendering.omitted.size();
    for (const std::string& cell : rendering.cells) {
        size += cell.size();
    }
    return size;
}

/// Output may be as large as allowed and no larger.
void checkLimit(const Input& input, RenderOptions options, const cli::Rendering& whole) {
    options.maxOutput = input.limit;
    const std::size_t size = sizeOf(whole);
    try {
        const auto limited = makeRenderer(options)->render(input.result.output());
        require(limited == whole, "a limit changes output that it allows");
        require(size <= input.limit, "output is larger than allowed");
    } catch (const cli::OutputTooLarge&) {
        require(size > input.limit, "output was refused that is as small as it should be");
    }
}

// -- json and ndjson -------------------------------------------------------------------------

std::string decodedBase64(const std::string& text) {
    constexpr std::string_view kDigits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    require(text.size() % 4 == 0, "base 64 is not padded");
    std::string bytes;
    unsigned bits = 0;
    unsigned held = 0;
    for (const char c : text.substr(0, text.find('='))) {
        const std::size_t digit = kDigits.find(c);
        require(digit != std::string_view::npos, "a character is no digit of base 64");
        bits = (bits << 6U | static_cast<unsigned>(digit)) & 0xFFFFU;
        held += 6;
        if (held >= 8) {
            held -= 8;
            bytes += static_cast<char>(bits >> held & 0xFFU);
        }
    }
    return bytes;
}

void checkPath(const std::string& path, const Json& json) {
    const bool isPlain = json.contains("path");
    require(isPlain == isUnicode(path), "a name is in base 64 for another reason than its bytes");
    require((isPlain ? json["path"].get<std::string>()
                     : decodedBase64(json["path_b64"].get<std::string>())) == path,
            "a name has other bytes than went in");
}

void checkMessage(const zephra::Message& message, const Json& json, const std::string& place,
                  InfoCheck& check) {
    require(json.size() == 2, "a message has other members than it should");
    check.checkText(message.identifier, json.at("id"), place + "/id");
    check.checkText(message.text, json.at("text"), place + "/text");
}

void checkMessages(const Outcome& outcome, const Json& json, InfoCheck& check) {
    require(json["error"].is_null() != outcome.error.has_value(), "an error came or went");
    if (outcome.error) {
        checkMessage(*outcome.error, json["error"], "/error", check);
    }
    require(json["warnings"].size() == outcome.warnings.size(), "warnings came or went");
    for (std::size_t i = 0; i < outcome.warnings.size(); ++i) {
        checkMessage(outcome.warnings[i], json["warnings"][i], "/warnings/" + std::to_string(i),
                     check);
    }
}

void checkRecord(const Input& input, const Json& json) {
    const Outcome& outcome = input.record.outcome;
    requireRecord(json, input.options.omitLargerThan.has_value());
    require(json["v"] == 1 && json["seq"] == input.record.id, "a number of the record is off");
    require(json["status"] == nameOf(outcome.status), "the status is another");
    require(json["warnings_dropped"] == outcome.warningsDropped &&
                json["elapsed_us"] == outcome.elapsedMicroseconds,
            "a count of the record is off");
    checkPath(input.record.path, json);
    InfoCheck check(json, input.options.omitLargerThan);
    checkMessages(outcome, json, check);
    if (outcome.error) {
        require(json["info"].empty(), "a file that was not read has directories");
    } else {
        check.checkInfo(input.output, Selection::of(input.options.fields));
    }
    check.checkLists();
}

void checkNdjson(const Input& input) {
    RenderOptions options = input.options;
    options.format = Format::ndjson;
    const Record record = rendered(input, options);
    if (!record.outcome.error) {
        checkLimit(input, options, record.outcome.rendering);
    }
    std::string line;
    const auto writer = makeRecordWriter(options);
    writer->begin(line);
    writer->record(record, line);
    writer->end(line);
    require(line.ends_with('\n'), "a record of ndjson does not end");
    line.pop_back();
    require(!hasControl(line), "a record of ndjson is more than one harmless line");
    checkRecord(input, Json::parse(line));
}

void checkJson(const Input& input) {
    RenderOptions options = input.options;
    options.format = Format::json;
    const Record record = rendered(input, options);
    std::string text;
    const auto writer = makeRecordWriter(options);
    writer->begin(text);
    writer->record(record, text);
    writer->record(record, text);
    writer->end(text);
    const Json json = Json::parse(text);
    require(json.is_array() && json.size() == 2, "json is no list of the records");
    checkRecord(input, json[1]);
    std::erase(text, '\n');
    require(!hasControl(text), "json has a control character");
}

// -- text and csv ----------------------------------------------------------------------------

void checkText(const Input& input) {
    const Record record = rendered(input, input.options);
    if (!record.outcome.error) {
        checkLimit(input, input.options, record.outcome.rendering);
    }
    std::string text;
    const auto writer = makeRecordWriter(input.options);
    writer->record(record, text);
    require(text.empty() == record.outcome.error.has_value(),
            "text tells of a file that failed, or nothing of one that was read");
    requireHarmlessText(text, input.options.colour);
}

void checkStandardError(const Input& input) {
    const Outcome& outcome = input.record.outcome;
    std::ostringstream err;
    cli::writeMessages(err, input.record.path, outcome);
    const std::string text = err.str();
    requireHarmlessText(text, false);
    const std::size_t lines =
        outcome.warnings.size() + (outcome.warningsDropped > 0 ? 1 : 0) + (outcome.error ? 1 : 0);
    require(static_cast<std::size_t>(std::ranges::count(text, '\n')) == lines,
            "a message is more or less than one line");
}

void checkCsv(const Input& input) {
    RenderOptions options = input.options;
    options.format = Format::csv;
    const Record record = rendered(input, options);
    if (!record.outcome.error) {
        checkLimit(input, options, record.outcome.rendering);
    }
    const auto fields = csvFields(options);
    const auto writer = makeRecordWriter(options);
    std::string header;
    writer->begin(header);
    std::string row;
    writer->record(record, row);
    const auto names = cellsOf(header);
    const auto cells = cellsOf(row);
    require(names.size() == 5 + fields.size() && cells.size() == names.size(),
            "a line of csv has another number of cells than there are columns");
    for (std::size_t i = 0; i < fields.size(); ++i) {
        requireCell(names[5 + i], fields[i]);
    }
    const Outcome& outcome = record.outcome;
    requireCell(cells[0], record.path);
    require(cells[1] == nameOf(outcome.status), "a cell has another status");
    requireCell(cells[2], outcome.error ? outcome.error->identifier : "");
    require(cells[3] == std::to_string(outcome.warnings.size() + outcome.warningsDropped),
            "a cell has another number of warnings");
    require(cells[4] == std::to_string(outcome.error ? 0 : input.output.count()),
            "a cell has another number of directories");
}

}  // namespace
}  // namespace veltrace::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace veltrace::fuzz;
    Parameters parameters(data, size);
    const std::size_t kind = parameters.upTo(3);
    const Input input(parameters);
    switch (kind) {
        case 0:
            checkNdjson(input);
            break;
        case 1:
            checkJson(input);
            break;
        case 2:
            checkText(input);
            checkStandardError(input);
            break;
        default:
            checkCsv(input);
    }
    return 0;
}
