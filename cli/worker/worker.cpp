#include "worker/worker.h"

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <unistd.h>
#include <utility>

#include "zephra/host/module.h"

#include "render/renderer.h"
#include "wire/exchange.h"
#include "wire/frame.h"
#include "worker/file_reader.h"
#include "worker/resource_watch.h"
#include "worker/sandbox.h"

namespace veltrace::cli {
namespace {

constexpr std::size_t kBlock = std::size_t{64} << 10;

/// Requests as they arrive. File names are short, but nothing guarantees that.
class Requests {
public:
    /// Waits for the next one; nothing at the end of the requests.
    [[nodiscard]] std::optional<Frame> next() {
        while (true) {
            if (const auto frame = buffer_.next()) {
                return frame;
            }
            const ssize_t size = read(kRequests, buffer_.room(kBlock), kBlock);
            if (size > 0) {
                buffer_.filled(static_cast<std::size_t>(size));
            } else if (size == 0 || errno != EINTR) {
                return std::nullopt;
            }
        }
    }

private:
    FrameBuffer buffer_{std::size_t{1} << 30};
};

/// False when nobody reads the answers any more.
[[nodiscard]] bool send(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t size = write(kAnswers, bytes.data(), bytes.size());
        if (size >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(size));
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

[[nodiscard]] bool sendReadiness(std::string_view error) {
    std::string bytes;
    const std::size_t begin = beginFrame(bytes, kSetupId);
    bytes += error;
    endFrame(bytes, begin);
    return send(bytes);
}

class Worker {
public:
    Worker(const WorkerSetup& setup, zephra::EntryPoint entryPoint)
        : renderer_(makeRenderer(setup.render)), reader_(std::move(entryPoint), *renderer_) {}

    /// False when nobody reads the answer.
    [[nodiscard]] bool answer(const Frame& request) {
        try {
            read(request);
        } catch (const std::bad_alloc&) {
            std::string().swap(
                bytes_);  // frees memory: the buffer may be large and still too small
            encodeFrame(request.id, {memoryRanOut(), true});
        }
        return send(bytes_);
    }

private:
    void read(const Frame& request) {
        Answer answer{reader_.read(std::string(request.payload))};
        // After memory ran out the module leaves its reader and its file behind.
        answer.wantsReplacement =
            answer.outcome.status == Status::limitMemory || growth_.hasGrown();
        if (messageBytes(answer.outcome) > kMaxMessageBytes) {
            answer.outcome = failure(Status::error, "veltrace:outputLimit",
                                     "The messages have more bytes than they may.");
        }
        encodeFrame(request.id, answer);
    }

    void encodeFrame(std::uint64_t id, const Answer& answer) {
        bytes_.clear();
        const std::size_t begin = beginFrame(bytes_, id);
        encode(answer, bytes_);
        endFrame(bytes_, begin);
    }

    std::unique_ptr<Renderer> renderer_;
    FileReader reader_;
    Growth growth_;
    std::string bytes_;
};

int work(Requests& requests, const WorkerSetup& setup) {
    // Without TZ the C library opens the file of the time zone for every date.
    static_cast<void>(setenv("TZ", ":/etc/localtime", 0));
    keepFreedMemory();
    const zephra::Module module = zephra::Module::load(setup.module);
    Worker worker(setup, module.entryPoint());
    static_cast<void>(
        enterSandbox({.memoryBytes = setup.memoryLimit, .parent = static_cast<pid_t>(setup.parent)},
                     setup.isSandboxed ? SandboxMode::on : SandboxMode::off));
    if (!sendReadiness("")) {
        return 0;
    }
    while (const auto request = requests.next()) {
        if (!worker.answer(*request)) {
            break;
        }
    }
    return 0;
}

}  // namespace

int runWorker() {
    Requests requests;
    const auto first = requests.next();
    if (!first) {
        return 0;
    }
    try {
        return work(requests, decodedSetup(first->payload));
    } catch (const zephra::LoadError& error) {
        return sendReadiness(error.what()) ? 1 : 0;
    }
}

}  // namespace veltrace::cli
