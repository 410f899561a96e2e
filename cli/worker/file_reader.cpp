#include "worker/file_reader.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <fcntl.h>
#include <new>
#include <string_view>
#include <sys/stat.h>

#include "descriptor.h"

namespace veltrace::cli {
namespace {

std::string_view kindOf(mode_t mode) {
    switch (mode & S_IFMT) {
        case S_IFDIR:
            return "a directory";
        case S_IFIFO:
            return "a FIFO";
        case S_IFSOCK:
            return "a socket";
        default:
            return "a device";
    }
}

/// Whether the user may read the file. Opens it: `access` is not among the system calls of the
/// sandbox, and may give another answer.
bool isReadable(const std::string& path) {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    return file.isOpen();
}

void keepWarnings(Outcome& outcome, const std::vector<zephra::Message>& warnings) {
    const std::size_t kept = std::min(warnings.size(), kMaxWarnings);
    outcome.warnings.assign(warnings.begin(), warnings.begin() + static_cast<std::ptrdiff_t>(kept));
    outcome.warningsDropped = warnings.size() - kept;
}

}  // namespace

Outcome memoryRanOut() {
    return failure(Status::limitMemory, "veltrace:memoryLimit",
                   "The memory that a file may take ran out.");
}

Outcome FileReader::read(const std::string& path) {
    const auto start = std::chrono::steady_clock::now();
    Outcome outcome;
    struct stat facts {};
    if (path.find('\0') != std::string::npos) {
        outcome =
            failure(Status::unreadable, "veltrace:badName", "A file name has no NUL character.");
    } else if (stat(path.c_str(), &facts) == 0 && !S_ISREG(facts.st_mode)) {
        // Opening one of these may block forever.
        outcome = failure(Status::unreadable, "veltrace:notRegularFile",
                          "It is " + std::string(kindOf(facts.st_mode)) + ", not a regular file.");
    } else {
        outcome = readRegular(path);
    }
    outcome.elapsedMicroseconds =
        static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::microseconds>(
                                       std::chrono::steady_clock::now() - start)
                                       .count());
    return outcome;
}

Outcome FileReader::readRegular(const std::string& path) {
    memory_.reset();
    try {
        const std::array<zephra::Argument, 1> arguments{path};
        const zephra::CallResult result = zephra::Host().call(entryPoint_, arguments);
        Outcome outcome;
        keepWarnings(outcome, result.warnings());
        judge(outcome, result, path);
        if (!outcome.error) {
            render(outcome, result);
        }
        return outcome;
    } catch (const std::bad_alloc&) {
        return memoryRanOut();
    }
}

void FileReader::render(Outcome& outcome, const zephra::CallResult& result) const {
    try {
        outcome.rendering = renderer_.render(result.output());
    } catch (const OutputTooLarge&) {
        outcome.status = Status::error;
        outcome.error = {"veltrace:outputLimit", "The output has more bytes than it may."};
    }
}

void FileReader::judge(Outcome& outcome, const zephra::CallResult& result,
                       const std::string& path) const {
    outcome.error = result.error();
    if (!outcome.error) {
        outcome.status = outcome.warnings.empty() ? Status::ok : Status::warned;
    } else if (memory_.ranOut()) {
        outcome.status = Status::limitMemory;
    } else {
        outcome.status = isReadable(path) ? Status::error : Status::unreadable;
    }
}

}  // namespace veltrace::cli
