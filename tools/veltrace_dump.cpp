// The command `veltrace-dump`: shows what the reader of one file contains after reading it.
#include <CLI/CLI.hpp>
#include <array>
#include <exception>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <unistd.h>
#include <utility>

#include "zephra/host/host.h"

#include "diag/dump.h"
#include "entry/create_reader.h"
#include "entry/errors.h"
#include "entry/host_messages.h"
#include "exit_status.h"
#include "messages.h"
#include "render/escape.h"
#include "tagfile/tag_file.h"

namespace {

using veltrace::module::TagFile;

/// The error of the read, if it is one of the module's own.
std::optional<zephra::Message> readAll(TagFile& reader) {
    try {
        reader.readAll();
        return std::nullopt;
    } catch (const veltrace::module::VeltraceFatalError& error) {
        return zephra::Message{error.identifier, error.message};
    } catch (const veltrace::module::VeltraceRecoverableError& error) {
        return zephra::Message{error.identifier, error.message};
    }
}

/// An entry point instead of `qvxFunction`: the same read, shown instead of converted, also after a
/// failed read.
void dumpFile(std::ostream& stream, const qvArray* name) {
    char* const fileName = qvArrayToString(name);
    TagFile* const reader = veltrace::module::createReader(fileName);
    const auto error = readAll(*reader);
    stream << *reader;
    delete reader;  // may throw, which no smart pointer survives
    qvFree(fileName);
    if (error) {
        veltrace::module::raiseHostError(error->identifier.c_str(), error->text);
    }
}

/// The lines of the dump, with control characters of the file's texts made visible.
std::string visibleLines(std::istream& dump) {
    std::string lines;
    for (std::string line; std::getline(dump, line);) {
        const bool isIndented = line.starts_with('\t');
        lines += isIndented ? "\t" : "";
        lines += veltrace::cli::visible(line.substr(isIndented ? 1 : 0)) + '\n';
    }
    return lines;
}

veltrace::cli::ExitStatus run(const std::string& file) {
    std::stringstream dump;
    const std::array<zephra::Argument, 1> arguments{file};
    const auto dumpInto = [&dump](int, qvArray*[], int, const qvArray* inputs[]) {
        dumpFile(dump, inputs[0]);
    };
    const zephra::CallResult result = zephra::Host().call(dumpInto, arguments);
    const bool isWhole = dump.good();

    std::cout << (isatty(STDOUT_FILENO) != 0 ? visibleLines(dump) : std::move(dump).str());
    veltrace::cli::Outcome messages;
    messages.warnings = result.warnings();
    messages.error = result.error();
    veltrace::cli::writeMessages(std::cerr, file, messages);
    if (!std::cout.flush() || !isWhole) {
        veltrace::cli::writeMessage(std::cerr, "cannot write the output");
        return veltrace::cli::kOutputFailed;
    }
    return result.error() ? veltrace::cli::kSomeFailed : veltrace::cli::kAllRead;
}

veltrace::cli::ExitStatus runWith(int argc, const char* const* argv) {
    CLI::App app(
        "Prints what the reader of an image file contains after reading it: file, directories "
        "and tags.\nControl characters of the file are shown as \\xHH on a terminal and go "
        "out as they are elsewhere.",
        "veltrace-dump");
    std::string file;
    app.add_option("FILE", file, "File to read")->required()->option_text(" ");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? veltrace::cli::kAllRead : veltrace::cli::kWrongUsage;
    }
    return run(file);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return runWith(argc, argv);
    } catch (const std::exception& error) {
        veltrace::cli::writeMessage(std::cerr, error.what());
        return veltrace::cli::kOutputFailed;
    }
}
