#include "messages.h"

#include <fmt/format.h>

#include "render/escape.h"

namespace veltrace::cli {
namespace {

void writeFileMessage(std::ostream& err, std::string_view path, std::string_view kind,
                      const zephra::Message& message) {
    std::string_view text = message.text;
    if (text.ends_with('\n')) {
        text.remove_suffix(1);
    }
    writeMessage(err, fmt::format("{}: {}: {} [{}]", path, kind, text, message.identifier));
}

}  // namespace

void writeMessage(std::ostream& err, std::string_view text) {
    writeVisibleMessage(err, visible(text));
}

void writeVisibleMessage(std::ostream& err, std::string_view text) {
    // In one piece, so that lines of processes that share a terminal do not mix.
    err << fmt::format("veltrace: {}\n", text) << std::flush;
}

void writeMessages(std::ostream& err, std::string_view path, const Outcome& outcome) {
    for (const zephra::Message& warning : outcome.warnings) {
        writeFileMessage(err, path, "warning", warning);
    }
    if (outcome.warningsDropped > 0) {
        writeMessage(err, fmt::format("{}: {} more warnings", path, outcome.warningsDropped));
    }
    if (outcome.error) {
        writeFileMessage(err, path, "error", *outcome.error);
    }
}

}  // namespace veltrace::cli
