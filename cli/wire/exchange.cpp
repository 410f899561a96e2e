#include "wire/exchange.h"

#include <numeric>
#include <utility>

#include "wire/bytes.h"

namespace veltrace::cli {
namespace {

/// Sizes of texts.
constexpr std::size_t kMaxOtherBytes = std::size_t{1} << 20;

void encode(Encoder& to, const zephra::Message& message) {
    to.text(message.identifier);
    to.text(message.text);
}

zephra::Message decodedMessage(Decoder& from) {
    std::string identifier(from.text());
    std::string text(from.text());
    return {std::move(identifier), std::move(text)};
}

void encode(Encoder& to, const Rendering& rendering) {
    to.text(rendering.body);
    to.text(rendering.nonfinite);
    to.text(rendering.latin1);
    to.text(rendering.omitted);
    to.number(rendering.cells.size());
    for (const std::string& cell : rendering.cells) {
        to.text(cell);
    }
    to.number(rendering.fieldsSeen.size());
    for (const std::uint32_t field : rendering.fieldsSeen) {
        to.number(field);
    }
}

Rendering decodedRendering(Decoder& from, std::size_t maxFields) {
    Rendering rendering;
    rendering.body = from.text();
    rendering.nonfinite = from.text();
    rendering.latin1 = from.text();
    rendering.omitted = from.text();
    const std::uint64_t maxCells = 1 + std::uint64_t{maxFields};  // and the number of directories
    for (std::uint64_t left = from.numberUpTo(maxCells); left > 0; --left) {
        rendering.cells.emplace_back(from.text());
    }
    for (std::uint64_t left = from.numberUpTo(maxFields); left > 0; --left) {
        rendering.fieldsSeen.push_back(
            static_cast<std::uint32_t>(from.numberUpTo(std::numeric_limits<std::uint32_t>::max())));
    }
    return rendering;
}

/// The other two are for the parent to decide.
Status decodedStatus(Decoder& from) {
    const auto status =
        static_cast<Status>(from.numberUpTo(static_cast<std::uint64_t>(Status::unreadable)));
    if (status == Status::limitTime || status == Status::crashed) {
        throw BadFrame("a worker cannot report this status");
    }
    return status;
}

void check(const Outcome& outcome) {
    const bool hasWarnings = !outcome.warnings.empty();
    if (isFailure(outcome.status) != outcome.error.has_value() ||
        (outcome.status == Status::ok && hasWarnings) ||
        (outcome.status == Status::warned && !hasWarnings) ||
        (outcome.warningsDropped > 0 && outcome.warnings.size() != kMaxWarnings) ||
        (outcome.error && outcome.rendering != Rendering{})) {
        throw BadFrame("status and messages disagree");
    }
    if (messageBytes(outcome) > kMaxMessageBytes) {
        throw BadFrame("the messages are too long");
    }
}

}  // namespace

std::size_t maxAnswer(std::size_t maxOutput, std::size_t maxFields) {
    constexpr std::size_t kMaxFieldBytes = 2 * sizeof(std::uint64_t);  // size of a cell, and index
    return maxOutput + kMaxMessageBytes + kMaxOtherBytes + maxFields * kMaxFieldBytes;
}

std::size_t messageBytes(const Outcome& outcome) {
    const auto add = [](std::size_t sum, const zephra::Message& message) {
        return sum + message.identifier.size() + message.text.size();
    };
    return std::accumulate(outcome.warnings.begin(), outcome.warnings.end(),
                           outcome.error ? add(0, *outcome.error) : 0, add);
}

std::string encoded(const WorkerSetup& setup) {
    std::string bytes;
    Encoder to(bytes);
    to.number(static_cast<std::uint64_t>(setup.render.format));
    to.number(setup.render.fields.size());
    for (const std::string& field : setup.render.fields) {
        to.text(field);
    }
    to.number(setup.render.maxValues);
    to.number(setup.render.omitLargerThan.has_value() ? 1 : 0);
    if (setup.render.omitLargerThan) {
        to.number(*setup.render.omitLargerThan);
    }
    to.number(setup.render.colour ? 1 : 0);
    to.number(setup.render.maxOutput);
    to.text(setup.module);
    to.number(setup.memoryLimit);
    to.number(setup.isSandboxed ? 1 : 0);
    to.number(static_cast<std::uint64_t>(setup.parent));
    return bytes;
}

WorkerSetup decodedSetup(std::string_view payload) {
    WorkerSetup setup;
    Decoder from(payload);
    setup.render.format =
        static_cast<Format>(from.numberUpTo(static_cast<std::uint64_t>(Format::csv)));
    for (std::uint64_t left = from.number(); left > 0; --left) {
        setup.render.fields.emplace_back(from.text());
    }
    setup.render.maxValues = from.number();
    if (from.flag()) {
        setup.render.omitLargerThan = from.number();
    }
    setup.render.colour = from.flag();
    setup.render.maxOutput = from.number();
    setup.module = from.text();
    setup.memoryLimit = from.number();
    setup.isSandboxed = from.flag();
    setup.parent = static_cast<std::int64_t>(from.number());
    from.end();
    return setup;
}

void encode(const Answer& answer, std::string& bytes) {
    const Outcome& outcome = answer.outcome;
    Encoder to(bytes);
    to.number(answer.wantsReplacement ? 1 : 0);
    to.number(static_cast<std::uint64_t>(outcome.status));
    to.number(outcome.error.has_value() ? 1 : 0);
    if (outcome.error) {
        encode(to, *outcome.error);
    }
    to.number(outcome.warnings.size());
    for (const zephra::Message& warning : outcome.warnings) {
        encode(to, warning);
    }
    to.number(outcome.warningsDropped);
    to.number(outcome.elapsedMicroseconds);
    encode(to, outcome.rendering);
}

Answer decodedAnswer(std::string_view payload, std::size_t maxFields) {
    Answer answer;
    Outcome& outcome = answer.outcome;
    Decoder from(payload);
    answer.wantsReplacement = from.flag();
    outcome.status = decodedStatus(from);
    if (from.flag()) {
        outcome.error = decodedMessage(from);
    }
    for (std::uint64_t left = from.numberUpTo(kMaxWarnings); left > 0; --left) {
        outcome.warnings.push_back(decodedMessage(from));
    }
    outcome.warningsDropped = from.number();
    outcome.elapsedMicroseconds = from.number();
    outcome.rendering = decodedRendering(from, maxFields);
    from.end();
    check(outcome);
    return answer;
}

}  // namespace veltrace::cli
