// Distributes files over worker processes.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <poll.h>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "pool/worker_process.h"
#include "record/outcome.h"
#include "render/renderer.h"
#include "wire/exchange.h"

namespace veltrace::cli {

/// No worker can be started: `what()` is one sentence for the user.
class WorkersFail : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct PoolOptions {
    std::size_t workers = 1;                      ///< at most
    std::chrono::milliseconds timeLimit{10'000};  ///< of one file
    /// Bytes of large answers, and of outcomes that the caller keeps. Beyond them only one large
    /// answer is received at a time.
    std::size_t heldBytes = std::size_t{16} << 20;
};

/// Every submitted request gets exactly one outcome, even when workers crash or hang. Workers are
/// started when there is work for them. Nothing that a worker sends is trusted, and the pool never
/// waits for one. Driven by the caller's loop around poll.
class Pool {
public:
    using Deliver = std::function<void(std::uint64_t id, Outcome outcome)>;

    /// `deliver` gets the outcomes as they arrive. `checker` outlives the pool.
    Pool(PoolOptions options, const WorkerSetup& setup, const Renderer& checker, Deliver deliver);

    /// Whether a worker can take another request.
    [[nodiscard]] bool hasRoom() const;
    /// Ids ascend. Throws WorkersFail when there is no worker and none can be started.
    void submit(std::uint64_t id, std::string path);
    /// Whether every request has its outcome.
    [[nodiscard]] bool isIdle() const;

    /// Whether every worker has enough requests to keep it busy for a while.
    [[nodiscard]] bool isBusy() const;

    /// Sends requests, and adds the descriptors to wait for. The caller keeps `held` bytes of
    /// outcomes.
    void addTo(std::vector<pollfd>& set, std::size_t held);
    /// When to call `enforceDeadlines` even if nothing happens.
    [[nodiscard]] Clock::time_point nextDeadline() const;

    /// Handles the descriptors that poll reported. Throws WorkersFail, and zephra::LoadError when a
    /// worker cannot load the module.
    void handle(std::span<const pollfd> set);
    /// After a child process has stopped.
    void endStoppedWorkers();
    /// Ends workers that have used up their time.
    void enforceDeadlines();
    /// Extends the deadlines by time in which the caller did something else than wait.
    void postpone(Clock::duration time);

private:
    using Workers = std::list<WorkerProcess>;

    void dispatch();
    [[nodiscard]] bool canStart() const;
    [[nodiscard]] bool start();
    [[nodiscard]] bool endIdleWorker();
    [[nodiscard]] WorkerProcess* leastLoaded();
    [[nodiscard]] bool isHeldBack(const WorkerProcess& worker, std::size_t held) const;

    void handleReady(int descriptor);
    void receiveFrom(WorkerProcess& worker);
    /// False when the worker was removed.
    [[nodiscard]] bool takeAnswers(WorkerProcess& worker);
    [[nodiscard]] bool takeReadiness(WorkerProcess& worker, const Frame& frame);
    [[nodiscard]] bool takeAnswer(WorkerProcess& worker, const Frame& frame);

    void remove(WorkerProcess& worker);
    void requeue(std::deque<Request> requests);
    void fail(WorkerProcess& worker, const std::string& how);
    void failToStart(WorkerProcess& worker, const std::string& how);
    void endForTime(WorkerProcess& worker);

    PoolOptions options_;
    std::string setup_;
    std::size_t maxFields_;
    std::size_t maxAnswer_;
    bool keepsError_;
    const Renderer& checker_;
    Deliver deliver_;
    Workers workers_;
    std::deque<Request> waiting_;
    std::deque<Request> secondTries_;
    int failedStarts_ = 0;
};

}  // namespace veltrace::cli
