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
    // In one piece, so that lines of processes that share a terminal do not mix.
    err << fmt::format("veltrace: {}\n", visible(text)) << std::flush;
}

void writeMessages(std::ostream& err, std::string_view path, const zephra::CallResult& result) {
    for (const zephra::Message& warning : result.warnings()) {
        writeFileMessage(err, path, "warning", warning);
    }
    if (result.error()) {
        writeFileMessage(err, path, "error", *result.error());
    }
}

}  // namespace veltrace::cli
