// The parent's side of one worker.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>

#include "process/child_process.h"
#include "process/pipe.h"
#include "wire/frame.h"

namespace veltrace::cli {

using Clock = std::chrono::steady_clock;

/// A file to be read.
struct Request {
    std::uint64_t id = 0;
    std::string path;
    bool isSecondTry = false;  ///< the process that read it first has died
};

/// A worker, the requests that it has not answered, and the pipes between. Never waits for the
/// worker. The time limit of the first of its requests runs from when it became the first, and anew
/// from the first byte of its answer: how long that takes depends on others too.
class WorkerProcess {
public:
    /// Starts a process; `setup` is the first that it gets. Throws std::system_error.
    WorkerProcess(std::string_view setup, std::size_t largestAnswer, bool keepsError,
                  Clock::duration timeLimit);

    /// Puts the request behind those that wait for `flush`.
    void send(Request request);

    [[nodiscard]] int requestDescriptor() const { return requests_.get(); }
    [[nodiscard]] int answerDescriptor() const { return answers_.get(); }
    /// Whether there is something that the pipe has not taken yet.
    [[nodiscard]] bool hasUnsent() const { return sent_ < unsent_.size(); }
    /// Hands over as much as the pipe takes; false when nobody will read it.
    [[nodiscard]] bool flush();

    /// Takes a part of what has come; false when nothing will come any more.
    [[nodiscard]] bool receive();
    /// The next frame that has come whole. Throws BadFrame.
    [[nodiscard]] std::optional<Frame> nextFrame() { return received_.next(); }
    /// Bytes of the answer that is coming: those that have come, and all as it says itself.
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

    /// When the time of the first request, or of becoming ready, is over.
    [[nodiscard]] std::optional<Clock::time_point> deadline() const;
    /// Time in which this process did not listen is not the worker's: its limit ends later by
    /// `time`, but not later than if it began now.
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
    WorkerProcess(Pipes pipes, std::string_view setup, std::size_t largestAnswer, bool keepsError,
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
