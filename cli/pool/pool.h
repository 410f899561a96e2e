// Spreads files over worker processes.
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

/// That there are no workers to be had: `what()` is one sentence for the user.
class WorkersFail : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct PoolOptions {
    std::size_t workers = 1;                      ///< at most
    std::chrono::milliseconds timeLimit{10'000};  ///< of one file
    /// Bytes of large answers and of whatever else the caller holds, beyond which only one large
    /// answer at a time is taken.
    std::size_t heldBytes = std::size_t{16} << 20;
};

/// Every request that is submitted gets exactly one outcome, whatever becomes of the workers, which
/// are started when there is work for them. Nothing that a worker sends is trusted, and none is
/// ever waited for. Driven by the caller's loop around poll.
class Pool {
public:
    using Deliver = std::function<void(std::uint64_t id, Outcome outcome)>;

    /// `deliver` gets the outcomes as they come. `checker` outlives the pool.
    Pool(PoolOptions options, const WorkerSetup& setup, const Renderer& checker, Deliver deliver);

    /// Whether another request would find a worker.
    [[nodiscard]] bool hasRoom() const;
    /// Ids ascend. Throws WorkersFail when there is no worker and none can be started.
    void submit(std::uint64_t id, std::string path);
    /// Whether every request has its outcome.
    [[nodiscard]] bool isIdle() const;

    /// Whether every worker has so many requests left that none will wait for more soon.
    [[nodiscard]] bool isBusy() const;

    /// Hands requests over, and adds the descriptors to wait for. The caller holds `held` bytes of
    /// outcomes.
    void addTo(std::vector<pollfd>& set, std::size_t held);
    /// When to come back even if nothing happens.
    [[nodiscard]] Clock::time_point nextDeadline() const;

    /// Does what the answers of poll ask for. Throws WorkersFail, and zephra::LoadError when a
    /// worker cannot load the module.
    void handle(std::span<const pollfd> set);
    /// After a child process has stopped.
    void endStoppedWorkers();
    /// Ends what has used up its time.
    void enforceDeadlines();
    /// Time in which the caller did something else than wait is not the workers'.
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
    /// False when the worker is gone.
    [[nodiscard]] bool takeAnswers(WorkerProcess& worker);
    [[nodiscard]] bool takeReadiness(WorkerProcess& worker, const Frame& frame);
    [[nodiscard]] bool takeAnswer(WorkerProcess& worker, const Frame& frame);

    void remove(WorkerProcess& worker);
    void giveBack(std::deque<Request> requests);
    void fail(WorkerProcess& worker, const std::string& how);
    void failToStart(WorkerProcess& worker, const std::string& how);
    void endForTime(WorkerProcess& worker);

    PoolOptions options_;
    std::string setup_;
    std::size_t largestAnswer_;
    bool keepsError_;
    const Renderer& checker_;
    Deliver deliver_;
    Workers workers_;
    std::deque<Request> waiting_;
    std::deque<Request> secondTries_;
    int failedStarts_ = 0;
};

}  // namespace veltrace::cli
