#include "names/walk_process.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <string>
#include <sys/prctl.h>
#include <system_error>
#include <unistd.h>

#include "names/directory_walk.h"
#include "names/image_signature.h"
#include "render/escape.h"

namespace veltrace::cli {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kFullBuffer = std::size_t{32} << 10;
constexpr std::chrono::milliseconds kMaxDelay{40};

/// Nobody reads any more.
struct ReaderGone {};

void writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t size = write(descriptor, bytes.data(), bytes.size());
        if (size >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(size));
        } else if (errno == EPIPE) {
            throw ReaderGone();
        } else if (errno != EINTR) {
            throw std::system_error(errno, std::generic_category(), "cannot write names");
        }
    }
}

std::string readAll(int descriptor) {
    std::string bytes;
    std::array<char, 1U << 16> block;
    for (ssize_t size = 1; size != 0;) {
        size = read(descriptor, block.data(), block.size());
        if (size > 0) {
            bytes.append(block.data(), static_cast<std::size_t>(size));
        } else if (size < 0 && errno != EINTR) {
            throw std::system_error(errno, std::generic_category(),
                                    "cannot read the directories to walk");
        }
    }
    return bytes;
}

/// Writes what a walk finds.
class Sender : public WalkListener {
public:
    Sender(int outFd, int errFd) : outFd_(outFd), errFd_(errFd) {}

    [[nodiscard]] bool recognises(int descriptor) override { return mayBeImage(descriptor); }

    void found(const std::string& name) override {
        names_.append(name).push_back('\0');
        if (names_.size() >= kFullBuffer) {
            flush();
        }
    }

    void failed(std::string_view path, std::string_view reason) override {
        isComplete_ = false;
        const std::string line =
            "veltrace: cannot walk " + visible(path) + ": " + std::string(reason) + "\n";
        try {
            writeAll(errFd_, line);
        } catch (const ReaderGone&) {
            return;  // nobody reads errors, but somebody may read names
        }
    }

    void step() override {
        if (!names_.empty() && Clock::now() - flushed_ >= kMaxDelay) {
            flush();
        }
    }

    void flush() {
        writeAll(outFd_, names_);
        names_.clear();
        flushed_ = Clock::now();
    }

    [[nodiscard]] bool isComplete() const { return isComplete_; }

private:
    int outFd_;
    int errFd_;
    std::string names_;
    Clock::time_point flushed_ = Clock::now();
    bool isComplete_ = true;
};

void walkEach(const std::string& roots, Sender& sender) {
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = roots.find('\0', begin)) != std::string::npos;
         begin = end + 1) {
        walk(roots.substr(begin, end - begin), sender);
    }
    sender.flush();
}

}  // namespace

int walkProcess(int rootsFd, int outFd, int errFd) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    static_cast<void>(std::signal(SIGINT, SIG_IGN));
    Sender sender(outFd, errFd);
    try {
        walkEach(readAll(rootsFd), sender);
    } catch (const ReaderGone&) {
        return kWalkedPart;
    }
    return sender.isComplete() ? kWalkedAll : kWalkedPart;
}

}  // namespace veltrace::cli
