#include "names/walked_names.h"

#include <cerrno>
#include <sys/mman.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "names/walk_process.h"

namespace veltrace::cli {
namespace {

[[noreturn]] void failToStart(int error) {
    throw NamesError("cannot start the walk of the directories: " +
                     std::generic_category().message(error));
}

/// A file in memory: nobody has to wait until the process has read all roots.
Descriptor stored(const std::vector<std::string>& roots) {
    Descriptor file(memfd_create("roots", MFD_CLOEXEC));
    if (!file.isOpen()) {
        failToStart(errno);
    }
    for (const std::string& root : roots) {
        // With its final NUL. A write to a file in memory is complete or fails.
        const auto size = static_cast<ssize_t>(root.size() + 1);
        if (write(file.get(), root.c_str(), root.size() + 1) != size) {
            failToStart(errno);
        }
    }
    if (lseek(file.get(), 0, SEEK_SET) != 0) {
        failToStart(errno);
    }
    return file;
}

}  // namespace

WalkedNames::WalkedNames(const std::vector<std::string>& roots,
                         const std::vector<std::string>& command) try
    : WalkedNames(makePipe(), stored(roots), command) {
} catch (const std::system_error& error) {
    failToStart(error.code().value());
}

WalkedNames::WalkedNames(Pipe pipe, const Descriptor& roots,
                         const std::vector<std::string>& command)
    : process_(command, {{roots.get(), STDIN_FILENO}, {pipe.writeEnd.get(), STDOUT_FILENO}}, true),
      reader_(std::move(pipe.readEnd), '\0', "the walk of the directories") {}

NameSource::State WalkedNames::next(std::string& name) {
    if (reader_.take(name)) {
        return State::name;
    }
    if (isAtEnd_) {
        return State::end;
    }
    const NameReader::Read read = reader_.read();
    if (read == NameReader::Read::end) {
        isAtEnd_ = true;
        const int status = process_.wait();
        if (!WIFEXITED(status) || WEXITSTATUS(status) > kWalkedPart) {
            throw NamesError("the walk of the directories was interrupted");
        }
        isComplete_ = WEXITSTATUS(status) == kWalkedAll;
        return State::end;
    }
    return reader_.take(name) ? State::name : State::later;
}

}  // namespace veltrace::cli
