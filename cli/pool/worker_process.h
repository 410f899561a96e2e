// One worker, from the parent's side.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>

#include "descriptor.h"
#include "process/child_process.h"
#include "wire/frame.h"

namespace veltrace::cli {

using Clock = std::chrono::steady_clock;

/// A file to read.
struct Request {
    std::uint64_t id = 0;
    std::string path;
    bool isSecondTry = false;  ///< the process that read it first died
};

/// A worker, its unanswered requests, and its pipes. Never waits for the worker. The time limit of
/// its first request starts when it becomes the first, and again with the first byte of its answer:
/// how long that takes depends on other processes too.
class WorkerProcess {
public:
    /// Starts a process and sends it `setup`. Throws std::system_error.
    WorkerProcess(std::string_view setup, std::size_t maxAnswer, bool keepsError,
                  Clock::duration timeLimit);

    /// Appends the request to those that wait for `flush`.
    void send(Request request);

    [[nodiscard]] int requestDescriptor() const { return requests_.get(); }
    [[nodiscard]] int answerDescriptor() const { return answers_.get(); }
    /// Whether some bytes are not in the pipe yet.
    [[nodiscard]] bool hasUnsent() const { return sent_ < unsent_.size(); }
    /// Writes as much as the pipe accepts; false when nobody will read it.
    [[nodiscard]] bool flush();

    /// Receives a part of the answers; false at their end.
    [[nodiscard]] bool receive();
    /// The next complete frame. Throws BadFrame.
    [[nodiscard]] std::optional<Frame> nextFrame() { return received_.next(); }
    /// Bytes of the incomplete answer: those that have arrived, and all according to its header.
    [[nodiscard]] std::size_t pending() const { return received_.pending(); }
    [[nodiscard]] std::size_t announced() const { return received_.announced(); }

    [[nodiscard]] bool isReady() const { return isReady_; }
    void becomeReady();

    /// Requests without an answer.
    [[nodiscard]] std::size_t load() const { return unanswered_.size(); }
    [[nodiscard]] const Request& first() const { return unanswered_.front(); }
    /// Removes the first request, which has its answer.
    Request finishFirst();
    /// Removes all requests.
    [[nodiscard]] std::deque<Request> takeRequests() { return std::move(unanswered_); }

    /// When the time of the first request, or for becoming ready, is over.
    [[nodiscard]] std::optional<Clock::time_point> deadline() const;
    /// Moves the deadline by time in which this process did not listen, but not beyond that of a
    /// request that starts now.
    void postpone(Clock::duration time);
    void restartTime() { deadline_ = Clock::now() + timeLimit_; }

    [[nodiscard]] bool isStopped() const { return process_.isStopped(); }
    /// See ChildProcess.
    std::string end() { return process_.end(); }

private:
    struct Pipes {
        Pipe requests = makePipe();
        Pipe answers = makePipe();
    };
    WorkerProcess(Pipes pipes, std::string_view setup, std::size_t maxAnswer, bool keepsError,
                  Clock::duration timeLimit);

    Descriptor requests_;
    Descriptor answers_;
    ChildProcess process_;
    Clock::duration timeLimit_;
    Clock::time_point deadline_;
    std::string unsent_;
    std::size_t sent_ = 0;
    FrameBuffer received_;
    std::deque<Request> unanswered_;
    bool isReady_ = false;
};

}  // namespace veltrace::cli
