// Messages between the processes of one run, where the other one may be compromised.
#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "finding.h"
#include "fuzz_target.h"
#include "largest_block.h"
#include "output_checks.h"
#include "parameters.h"
#include "pieces.h"
#include "record/record_writer.h"
#include "render/csv_renderer.h"
#include "render/renderer.h"
#include "wire/exchange.h"
#include "wire/frame.h"

namespace veltrace::fuzz {
namespace {

using cli::Answer;
using cli::BadFrame;
using cli::FrameBuffer;

constexpr std::size_t kLargePayload = std::size_t{64} << 10;
constexpr std::size_t kMaxOutput = std::size_t{1} << 20;
constexpr std::size_t kMaxFields = 3;

struct OwnedFrame {
    std::uint64_t id;
    std::string payload;
    friend bool operator==(const OwnedFrame&, const OwnedFrame&) = default;
};

/// What comes of a stream of bytes.
struct Reading {
    std::vector<OwnedFrame> frames;
    std::string refusal;      // empty: nothing was refused
    std::size_t pending = 0;  // bytes of the incomplete frame, if nothing was refused
    friend bool operator==(const Reading&, const Reading&) = default;
};

// -- Streams ---------------------------------------------------------------------------------

void appendFrame(std::string& stream, std::uint64_t id, std::string_view payload) {
    const std::size_t begin = cli::beginFrame(stream, id);
    stream += payload;
    cli::endFrame(stream, begin);
}

zephra::Message madeMessage(Parameters& parameters) {
    std::string identifier = parameters.text(12);
    return {std::move(identifier), parameters.text(40)};
}

/// The lists of the rendering are the remaining bytes, separated by a byte that none may contain.
Answer madeAnswer(Parameters& parameters) {
    constexpr char kBetween = '\x1f';
    Answer answer;
    cli::Outcome& outcome = answer.outcome;
    answer.wantsReplacement = parameters.flag();
    outcome.status = static_cast<cli::Status>(parameters.upTo(cli::kStatusCount - 1));
    if (parameters.flag()) {
        outcome.error = madeMessage(parameters);
    }
    for (std::size_t left = parameters.upTo(3); left > 0; --left) {
        outcome.warnings.push_back(madeMessage(parameters));
    }
    outcome.warningsDropped = parameters.upTo(3);
    outcome.elapsedMicroseconds = parameters.value<std::uint64_t>();
    cli::Rendering& rendering = outcome.rendering;
    for (std::size_t left = parameters.upTo(4); left > 0; --left) {
        rendering.cells.push_back(parameters.text(20));
    }
    for (std::size_t left = parameters.upTo(3); left > 0; --left) {
        rendering.fieldsSeen.push_back(static_cast<std::uint32_t>(parameters.upTo(3)));
    }
    std::string_view rest = parameters.rest();
    for (std::string* list : {&rendering.nonfinite, &rendering.latin1, &rendering.omitted}) {
        const std::size_t between = std::min(rest.rfind(kBetween), rest.size());
        *list = rest.substr(std::min(between + 1, rest.size()));
        rest = rest.substr(0, between);
    }
    rendering.body = rest;
    return answer;
}

std::string answerStream(Parameters& parameters) {
    const std::string changes = parameters.text(8);
    const std::uint64_t id = parameters.value<std::uint64_t>();
    std::string payload;
    encode(madeAnswer(parameters), payload);
    for (std::size_t i = 0; i + 1 < changes.size(); i += 2) {
        payload[static_cast<unsigned char>(changes[i]) % payload.size()] = changes[i + 1];
    }
    std::string stream;
    appendFrame(stream, cli::kSetupId, "");
    appendFrame(stream, id, payload);
    return stream;
}

std::string setupStream(Parameters& parameters) {
    cli::WorkerSetup setup;
    setup.render.format = static_cast<cli::Format>(parameters.upTo(3));
    for (std::size_t left = parameters.upTo(3); left > 0; --left) {
        setup.render.fields.push_back(parameters.text(20));
    }
    if (parameters.flag()) {
        setup.render.omitLargerThan = parameters.value<std::size_t>();
    }
    setup.parent = parameters.value<std::int64_t>();
    setup.module = parameters.text(40);
    std::string stream;
    appendFrame(stream, cli::kSetupId, encoded(setup));
    return stream + std::string(parameters.rest());
}

std::string framed(std::string_view payload) {
    std::string stream;
    appendFrame(stream, 0, payload);
    return stream;
}

std::string madeStream(Parameters& parameters) {
    switch (parameters.upTo(3)) {
        case 0:
            return std::string(parameters.rest());
        case 1:
            return framed(parameters.rest());
        case 2:
            return setupStream(parameters);
        default:
            return answerStream(parameters);
    }
}

// -- Frames ----------------------------------------------------------------------------------

/// What a process does with a piece of a stream.
void takeFrames(FrameBuffer& buffer, std::string_view piece, std::size_t maxPayload,
                Reading& reading) {
    watchBlocks();
    std::memcpy(buffer.room(piece.size()), piece.data(), piece.size());
    buffer.filled(piece.size());
    // A string doubles what it holds at least.
    require(largestBlock() <= 2 * (cli::kFrameHeader + maxPayload + piece.size()) + 64,
            "a frame takes more memory than the largest one");
    while (const auto frame = buffer.next()) {
        reading.frames.push_back({frame->id, std::string(frame->payload)});
    }
    require(buffer.announced() == 0 || buffer.pending() < buffer.announced(),
            "a frame that has come whole was not taken");
    reading.pending = buffer.pending();
}

Reading readingOf(std::string_view stream, Pieces pieces, std::size_t maxPayload) {
    Reading reading;
    FrameBuffer buffer(maxPayload);
    try {
        while (!stream.empty()) {
            takeFrames(buffer, pieces.takeFrom(stream), maxPayload, reading);
        }
    } catch (const BadFrame& error) {
        reading.refusal = error.what();
        reading.pending = 0;
    }
    return reading;
}

void checkFraming(std::string_view stream, const Reading& reading) {
    std::string again;
    for (const OwnedFrame& frame : reading.frames) {
        appendFrame(again, frame.id, frame.payload);
    }
    require(stream.starts_with(again), "frames are not the bytes that came");
    require(!reading.refusal.empty() || again.size() + reading.pending == stream.size(),
            "bytes are neither in a frame nor pending");
}

// -- Payloads --------------------------------------------------------------------------------

void checkSetup(const std::string& payload) {
    try {
        require(encoded(cli::decodedSetup(payload)) == payload,
                "a setup was accepted that nobody writes");
    } catch (const BadFrame&) {
        return;
    }
}

std::optional<Answer> answerIn(const std::string& payload) {
    try {
        watchBlocks();
        Answer answer = cli::decodedAnswer(payload, kMaxFields);
        require(largestBlock() <= 16 * payload.size() + 4096,
                "an answer takes far more memory than its bytes");
        std::string again;
        encode(answer, again);
        require(again == payload, "an answer was accepted that nobody writes");
        return answer;
    } catch (const BadFrame&) {
        return std::nullopt;
    }
}

// -- Renderings ------------------------------------------------------------------------------

/// One way to ask for output.
struct Format {
    explicit Format(cli::RenderOptions asked)
        : options(std::move(asked)), renderer(cli::makeRenderer(options)) {}

    cli::RenderOptions options;
    std::unique_ptr<cli::Renderer> renderer;
};

std::span<const Format> formats() {
    static const std::array<Format, 5> kFormats{
        Format({cli::Format::ndjson, {}, 12, std::nullopt, false, kMaxOutput}),
        Format({cli::Format::ndjson, {"A", "B.C"}, 12, 3, false, kMaxOutput}),
        Format({cli::Format::text, {}, 12, std::nullopt, false, kMaxOutput}),
        Format({cli::Format::text, {"A", "B.C"}, 12, std::nullopt, true, kMaxOutput}),
        Format({cli::Format::csv, {"A", "B.C"}, 12, std::nullopt, false, kMaxOutput})};
    return kFormats;
}

std::string recordOf(const cli::Outcome& outcome, const cli::RenderOptions& options) {
    std::string out;
    makeRecordWriter(options)->record({0, "name", outcome}, out);
    return out;
}

void checkJson(std::string_view line, bool listsOmitted) {
    require(line.ends_with('\n'), "a record of ndjson does not end");
    line.remove_suffix(1);
    require(!hasControl(line), "a record of ndjson is more than one harmless line");
    try {
        requireRecord(Json::parse(line), listsOmitted);
    } catch (const Json::out_of_range&) {
        return;  // of a number beyond any double, which JSON has and this reader has not
    }
}

void checkOutput(const cli::Outcome& outcome, const cli::RenderOptions& options) {
    const std::string out = recordOf(outcome, options);
    switch (options.format) {
        case cli::Format::text:
            requireHarmlessText(out, options.colour);
            break;
        case cli::Format::csv:
            require(cellsOf(out).size() == 5 + csvFields(options).size(),
                    "a row of csv has another number of cells than the header");
            break;
        default:
            checkJson(out, options.omitLargerThan.has_value());
    }
}

/// Whatever a renderer of the parent accepts may go to the output.
void checkRendering(const cli::Outcome& outcome) {
    const cli::Rendering& rendering = outcome.rendering;
    std::size_t size = rendering.body.size() + rendering.nonfinite.size() +
                       rendering.latin1.size() + rendering.omitted.size();
    for (const std::string& cell : rendering.cells) {
        size += cell.size();
    }
    for (const Format& format : formats()) {
        watchBlocks();
        const bool isAccepted = format.renderer->accepts(rendering);
        require(largestBlock() <= 16 * size + 4096,
                "checking a rendering takes far more memory than it");
        if (isAccepted) {
            checkOutput(outcome, format.options);
        }
    }
}

void checkPayload(const std::string& payload) {
    checkSetup(payload);
    const auto answer = answerIn(payload);
    if (answer && !answer->outcome.error) {
        checkRendering(answer->outcome);
    }
}

}  // namespace
}  // namespace veltrace::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace veltrace::fuzz;
    Parameters parameters(data, size);
    const Pieces pieces(parameters);
    const std::size_t maxPayload = parameters.flag() ? kLargePayload : parameters.upTo(1000);
    const std::string stream = madeStream(parameters);
    const Reading whole = readingOf(stream, Pieces(), maxPayload);
    require(readingOf(stream, pieces, maxPayload) == whole,
            "how bytes are split changes what comes of them");
    checkFraming(stream, whole);
    for (const OwnedFrame& frame : whole.frames) {
        checkPayload(frame.payload);
    }
    return 0;
}
