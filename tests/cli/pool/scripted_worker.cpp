#include "pool/scripted_worker.h"

#include <fcntl.h>
#include <unistd.h>

#include "temporary_directory.h"
#include "wire/exchange.h"
#include "wire/frame.h"
#include "worker/worker.h"

namespace veltrace::cli::test {
namespace {

void send(const std::string& bytes) {
    static_cast<void>(!write(kAnswers, bytes.data(), bytes.size()));
}

std::string framed(std::uint64_t id, const std::string& payload) {
    std::string bytes;
    const std::size_t begin = beginFrame(bytes, id);
    bytes += payload;
    endFrame(bytes, begin);
    return bytes;
}

std::string openDescriptors() {
    std::string numbers;
    for (int number = 0; number < 256; ++number) {
        if (fcntl(number, F_GETFD) >= 0) {
            numbers += std::to_string(number) + ' ';
        }
    }
    return numbers;
}

std::string okAnswer(const std::string& warning) {
    Answer answer;
    answer.outcome.rendering.body = "[]";
    if (!warning.empty()) {
        answer.outcome.status = Status::warned;
        answer.outcome.warnings.push_back({"id", warning});
    }
    std::string payload;
    encode(answer, payload);
    return payload;
}

void answer(const std::string& script, const Frame& request) {
    const bool isPlain = request.payload == kPlain;
    if (!isPlain && script == kSilent) {
        pause();
    }
    std::string bytes =
        framed(request.id, okAnswer(script == kOpenHanded ? openDescriptors() : ""));
    if (!isPlain && script == kTalkative) {
        bytes += framed(request.id + 1, std::string(1U << 20, 'x')).substr(0, 100);
    }
    send(bytes);
    if (!isPlain && script == kDeaf) {
        close(kRequests);
        pause();
    }
}

[[noreturn]] void work() {
    FrameBuffer requests(1U << 20);
    std::string script;
    while (true) {
        while (const auto frame = requests.next()) {
            if (frame->id == kSetupId) {
                script = decodedSetup(frame->payload).module;
                usleep(script == kLate ? 300'000 : 0);
                send(framed(kSetupId, ""));
            } else {
                answer(script, *frame);
            }
        }
        const ssize_t size = read(kRequests, requests.room(4096), 4096);
        if (size <= 0) {
            _exit(0);
        }
        requests.filled(static_cast<std::size_t>(size));
    }
}

/// The process that a pool starts is this program, and works before `main`.
bool actAsWorker() {
    if (contentOf("/proc/self/cmdline") == std::string("veltrace\0", 9) + kWorkerMode + '\0') {
        work();
    }
    return false;
}

[[maybe_unused]] const bool kIsWorker = actAsWorker();

}  // namespace
}  // namespace veltrace::cli::test
