#include "pool/worker_process.h"

#include <algorithm>
#include <cerrno>
#include <unistd.h>
#include <utility>

#include "wire/exchange.h"
#include "worker/worker.h"

namespace veltrace::cli {
namespace {

/// The capacity of a pipe. Read from one worker at a time, so that none has to wait for long.
constexpr std::size_t kBlock = std::size_t{64} << 10;
/// To become ready, whatever the files are.
constexpr std::chrono::seconds kStartTimeout{20};

void appendFrame(std::string& bytes, std::uint64_t id, std::string_view payload) {
    const std::size_t begin = beginFrame(bytes, id);
    bytes += payload;
    endFrame(bytes, begin);
}

}  // namespace

WorkerProcess::WorkerProcess(std::string_view setup, std::size_t maxAnswer, bool keepsError,
                             Clock::duration timeLimit)
    : WorkerProcess(Pipes{}, setup, maxAnswer, keepsError, timeLimit) {}

WorkerProcess::WorkerProcess(Pipes pipes, std::string_view setup, std::size_t maxAnswer,
                             bool keepsError, Clock::duration timeLimit)
    : requests_(std::move(pipes.requests.writeEnd)),
      answers_(std::move(pipes.answers.readEnd)),
      process_(
          {"veltrace", kWorkerMode},
          {{pipes.requests.readEnd.get(), kRequests}, {pipes.answers.writeEnd.get(), kAnswers}},
          keepsError),
      timeLimit_(timeLimit),
      deadline_(Clock::now() + kStartTimeout),
      received_(maxAnswer) {
    makeNonBlocking(requests_);
    makeNonBlocking(answers_);
    appendFrame(unsent_, kSetupId, setup);
}

void WorkerProcess::send(Request request) {
    if (unanswered_.empty() && isReady_) {
        restartTime();
    }
    appendFrame(unsent_, request.id, request.path);
    unanswered_.push_back(std::move(request));
}

bool WorkerProcess::flush() {
    while (hasUnsent()) {
        const ssize_t size = write(requests_.get(), unsent_.data() + sent_, unsent_.size() - sent_);
        if (size < 0 && errno != EINTR) {
            return errno == EAGAIN;
        }
        sent_ += static_cast<std::size_t>(std::max<ssize_t>(size, 0));
    }
    unsent_.clear();
    sent_ = 0;
    return true;
}

bool WorkerProcess::receive() {
    const bool wasPending = received_.pending() > 0;
    const ssize_t size = read(answers_.get(), received_.room(kBlock), kBlock);
    if (size <= 0) {
        return size < 0 && (errno == EINTR || errno == EAGAIN);
    }
    received_.filled(static_cast<std::size_t>(size));
    if (!wasPending && isReady_) {
        restartTime();
    }
    return true;
}

void WorkerProcess::becomeReady() {
    isReady_ = true;
    restartTime();
}

Request WorkerProcess::finishFirst() {
    Request request = std::move(unanswered_.front());
    unanswered_.pop_front();
    restartTime();
    return request;
}

void WorkerProcess::postpone(Clock::duration time) {
    const Clock::duration limit = isReady_ ? timeLimit_ : kStartTimeout;
    deadline_ = std::min(deadline_ + time, Clock::now() + limit);
}

std::optional<Clock::time_point> WorkerProcess::deadline() const {
    return isReady_ && unanswered_.empty() ? std::nullopt : std::optional(deadline_);
}

}  // namespace veltrace::cli
