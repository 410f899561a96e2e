// The command `veltrace`.
#include <csignal>
#include <exception>
#include <fcntl.h>
#include <iostream>
#include <string_view>
#include <unistd.h>

#include "exit_status.h"
#include "messages.h"
#include "names/walk_process.h"
#include "options.h"
#include "run/run.h"
#include "worker/worker.h"

namespace veltrace::cli {
namespace {

/// Files opened later must not get the numbers of the standard ones. Writing to a missing one
/// fails.
void openMissingStandardDescriptors() {
    int descriptor = -1;
    do {
        descriptor = open("/dev/null", O_RDONLY);
    } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
    if (descriptor > STDERR_FILENO) {
        close(descriptor);
    }
}

int mainWith(int argc, const char* const* argv) {
    const std::string_view mode = argc == 2 ? argv[1] : "";
    if (mode == kWorkerMode) {
        return runWorker();
    }
    if (mode == kWalkMode) {
        return walkProcess(STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO);
    }
    // A write to a pipe without a reader then fails with EPIPE.
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    const auto parsed = parseOptions(argc, argv);
    if (const auto* const options = std::get_if<Options>(&parsed)) {
        return run(*options);
    }
    const auto& reply = std::get<Reply>(parsed);
    if (reply.isError) {
        std::cerr << reply.text;
        return kWrongUsage;
    }
    return print(reply.text);
}

}  // namespace
}  // namespace veltrace::cli

int main(int argc, char** argv) {
    try {
        veltrace::cli::openMissingStandardDescriptors();
        return veltrace::cli::mainWith(argc, argv);
    } catch (const std::exception& error) {
        veltrace::cli::writeMessage(std::cerr, error.what());
        return veltrace::cli::kInternalFault;
    }
}
