#include "output_file.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fmt/format.h>
#include <memory>
#include <poll.h>
#include <random>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "render/escape.h"
#include "run/interruption.h"

namespace veltrace::cli {
namespace {

constexpr mode_t kNewFile = 0666;  // less the umask
constexpr mode_t kPermissions = 0777;
constexpr int kAttempts = 100;
constexpr int kTimeout = 500;  // milliseconds

/// With the slash at its end; empty for the current directory.
std::string directoryOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "" : path.substr(0, slash + 1);
}

/// A name beside `path` that is most likely free. Its length does not depend on `path`.
std::string siblingOf(const std::string& path) {
    std::random_device random;
    return directoryOf(path) + fmt::format(".veltrace-{:08x}{:08x}", random(), random());
}

/// Calls `make` with names beside `path` until one is free; -1 and errno as `make` left it.
template <class Make>
int makeSibling(const std::string& path, std::string& sibling, Make make) {
    for (int attempt = 1;; ++attempt) {
        std::string name = siblingOf(path);
        const int made = make(name.c_str());
        if (made != -1) {
            sibling = std::move(name);
            return made;
        }
        if (errno != EEXIST || attempt == kAttempts) {
            return -1;
        }
    }
}

/// The name in the process file system by which an unnamed file can be linked.
std::string openName(const Descriptor& file) {
    return fmt::format("/proc/self/fd/{}", file.get());
}

/// The target of the links of an existing file.
std::string withoutLinks(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.c_str(), nullptr),
                                                               &std::free);
    return resolved ? resolved.get() : "";
}

void waitUntilWritable(int descriptor) {
    pollfd waiting{descriptor, POLLOUT, 0};
    poll(&waiting, 1, -1);  // the next write reports any error
}

}  // namespace

OutputFile::OutputFile() : shown_("the output"), file_(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0)) {
    if (!file_.isOpen()) {
        fail(errno);
    }
}

OutputFile::OutputFile(const std::string& target) : shown_(visible(target)), target_(target) {
    struct stat status {};
    if (stat(target.c_str(), &status) != 0) {
        const int error = errno;
        // A dangling link is rejected: neither it nor its target should be created by accident.
        if (error != ENOENT || target.empty() || lstat(target.c_str(), &status) == 0) {
            fail(error);
        }
        openBeside();
        return;
    }
    if (!S_ISREG(status.st_mode)) {
        target_.clear();
        file_ = Descriptor(open(target.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
        if (!file_.isOpen()) {
            fail(errno);
        }
        return;
    }
    // Replacing a file that may not be written would work, but its owner forbids writing.
    target_ = withoutLinks(target);
    if (target_.empty() || faccessat(AT_FDCWD, target_.c_str(), W_OK, AT_EACCESS) != 0) {
        fail(errno);
    }
    mode_ = status.st_mode & kPermissions;
    openBeside();
}

OutputFile::~OutputFile() {
    if (!sibling_.empty()) {
        unlink(sibling_.c_str());
    }
}

void OutputFile::openBeside() {
    const std::string directory = directoryOf(target_);
    file_ = Descriptor(open(directory.empty() ? "." : directory.c_str(),
                            O_TMPFILE | O_WRONLY | O_CLOEXEC, kNewFile));
    // Without a process file system it could never get a name.
    if (file_.isOpen() && access(openName(file_).c_str(), F_OK) == 0) {
        return;
    }
    file_ = Descriptor(makeSibling(target_, sibling_, [](const char* name) {
        return open(name, O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, kNewFile);
    }));
    if (!file_.isOpen()) {
        fail(errno);
    }
}

void OutputFile::write(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::string_view piece = nextPiece(bytes);
        const ssize_t size = ::write(file_.get(), piece.data(), piece.size());
        if (size >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(size));
        } else if (errno == EAGAIN) {
            waitUntilWritable(file_.get());  // another process made the shared output non-blocking
        } else if (errno != EINTR) {
            fail(errno);
        }
    }
}

/// The bytes to write next: all of them, or, once a signal has ended the run, as many as the pipe
/// accepts without waiting.
std::string_view OutputFile::nextPiece(std::string_view bytes) const {
    if (interruption() == 0) {
        return bytes;
    }
    pollfd waiting{file_.get(), POLLOUT, 0};
    if (poll(&waiting, 1, kTimeout) == 0) {
        throw OutputInterrupted("nobody reads " + shown_);
    }
    return bytes.substr(0, PIPE_BUF);
}

void OutputFile::commit() {
    moveTo(target_);
}

void OutputFile::keepPartial() {
    moveTo(target_ + ".partial");
}

void OutputFile::moveTo(const std::string& place) {
    const bool isDirect = target_.empty();
    if (!isDirect) {
        giveName();
    }
    if (close(file_.release()) != 0) {
        fail(errno);
    }
    if (!isDirect) {
        if (std::rename(sibling_.c_str(), place.c_str()) != 0) {
            fail(errno);
        }
        sibling_.clear();
    }
}

/// Gives the file its mode and a temporary name.
void OutputFile::giveName() {
    if (mode_ && fchmod(file_.get(), *mode_) != 0) {
        fail(errno);
    }
    if (sibling_.empty() && makeSibling(target_, sibling_, [this](const char* name) {
                                return linkat(AT_FDCWD, openName(file_).c_str(), AT_FDCWD, name,
                                              AT_SYMLINK_FOLLOW);
                            }) == -1) {
        fail(errno);
    }
}

void OutputFile::fail(int error) const {
    const std::string text =
        "cannot write " + shown_ + ": " + std::generic_category().message(error);
    if (error == EPIPE) {
        throw OutputClosed(text);
    }
    throw OutputError(text);
}

}  // namespace veltrace::cli
