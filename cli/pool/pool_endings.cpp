// How workers end, and what becomes of the files that they had.
#include <fmt/format.h>
#include <utility>

#include "pool/pool.h"

namespace veltrace::cli {
namespace {

/// Workers in turn that end before they are ready. They will always, then; a few may have been
/// killed by whatever kills processes on this machine.
constexpr int kMostFailedStarts = 8;

}  // namespace

void Pool::remove(WorkerProcess& worker) {
    giveBack(worker.takeRequests());
    workers_.remove_if([&](const WorkerProcess& other) { return &other == &worker; });
}

void Pool::giveBack(std::deque<Request> requests) {
    for (; !requests.empty(); requests.pop_back()) {
        auto& queue = requests.back().isSecondTry ? secondTries_ : waiting_;
        queue.push_front(std::move(requests.back()));
    }
}

/// Ends a worker that died or cannot be trusted any more. `how` is empty when its death says it.
void Pool::fail(WorkerProcess& worker, const std::string& how) {
    if (!worker.isReady()) {
        failToStart(worker, how);
        return;
    }
    const std::string death = worker.end();
    if (worker.load() == 0) {
        remove(worker);
        return;
    }
    Request suspect = worker.finishFirst();
    remove(worker);
    if (!suspect.isSecondTry) {
        suspect.isSecondTry = true;
        secondTries_.push_back(std::move(suspect));
        return;
    }
    deliver_(suspect.id,
             failure(Status::crashed, "veltrace:crashed",
                     fmt::format("The process that read the file ended {}, and so did the one "
                                 "before.",
                                 how.empty() ? death : how)));
}

void Pool::failToStart(WorkerProcess& worker, const std::string& how) {
    const std::string death = worker.end();
    remove(worker);
    if (++failedStarts_ == kMostFailedStarts) {
        throw WorkersFail(
            fmt::format("the processes that should read files end {} before they are ready",
                        how.empty() ? death : how));
    }
}

void Pool::endStoppedWorkers() {
    for (auto worker = workers_.begin(); worker != workers_.end();) {
        WorkerProcess& current = *worker++;
        if (!current.isStopped()) {
            continue;
        }
        // What it has said counts, above all that it was ready.
        static_cast<void>(current.receive());
        if (takeAnswers(current)) {
            fail(current, "when a signal stopped it");
        }
    }
    dispatch();
}

void Pool::enforceDeadlines() {
    const auto now = Clock::now();
    for (auto worker = workers_.begin(); worker != workers_.end();) {
        WorkerProcess& current = *worker++;
        if (current.deadline().value_or(now) < now) {
            endForTime(current);
        }
    }
    dispatch();
}

void Pool::endForTime(WorkerProcess& worker) {
    if (!worker.isReady()) {
        failToStart(worker, "without a sign of life");
        return;
    }
    const Request request = worker.finishFirst();
    remove(worker);
    const std::chrono::duration<double> limit = options_.timeLimit;
    Outcome outcome = failure(Status::limitTime, "veltrace:timeLimit",
                              fmt::format("The file was not read within {} s.", limit.count()));
    outcome.elapsedMicroseconds =
        static_cast<std::uint64_t>(std::chrono::microseconds(options_.timeLimit).count());
    deliver_(request.id, std::move(outcome));
}

void Pool::postpone(Clock::duration time) {
    for (WorkerProcess& worker : workers_) {
        worker.postpone(time);
    }
}

}  // namespace veltrace::cli
