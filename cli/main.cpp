// The command `veltrace`.
#include <csignal>
#include <cstdio>
#include <exception>
#include <iostream>

#include "exit_status.h"
#include "messages.h"
#include "options.h"
#include "run.h"

namespace veltrace::cli {
namespace {

ExitStatus runWith(int argc, const char* const* argv) {
    const auto parsed = parseOptions(argc, argv);
    if (const auto* const options = std::get_if<Options>(&parsed)) {
        return run(*options, std::cout, std::cerr);
    }
    const auto& reply = std::get<Reply>(parsed);
    if (reply.isError) {
        std::cerr << reply.text;
        return kWrongUsage;
    }
    return print(reply.text, std::cout, std::cerr);
}

}  // namespace
}  // namespace veltrace::cli

int main(int argc, char** argv) {
    try {
        std::ios::sync_with_stdio(false);
        // A reader that has gone away is then a failed write like any other.
        static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
        return veltrace::cli::runWith(argc, argv);
    } catch (const std::exception& error) {
        veltrace::cli::writeMessage(std::cerr, error.what());
        return veltrace::cli::kOutputFailed;
    }
}
