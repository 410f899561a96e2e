// Workers that fail, and the files that they had.
#include <fmt/format.h>
#include <utility>

#include "pool/pool.h"

namespace veltrace::cli {
namespace {

/// Workers in a row that end before they are ready. A few may have been killed by the system; with
/// so many, all will end.
constexpr int kMaxFailedStarts = 8;

}  // namespace

void Pool::remove(WorkerProcess& worker) {
    requeue(worker.takeRequests());
    workers_.remove_if([&](const WorkerProcess& other) { return &other == &worker; });
}

void Pool::requeue(std::deque<Request> requests) {
    for (; !requests.empty(); requests.pop_back()) {
        auto& queue = requests.back().isSecondTry ? secondTries_ : waiting_;
        queue.push_front(std::move(requests.back()));
    }
}

/// Ends a worker that died or cannot be trusted any more. `how` is empty when its exit is the
/// cause.
void Pool::fail(WorkerProcess& worker, const std::string& how) {
    if (!worker.isReady()) {
        failToStart(worker, how);
        return;
    }
    const std::string exit = worker.end();
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
                                 how.empty() ? exit : how)));
}

void Pool::failToStart(WorkerProcess& worker, const std::string& how) {
    const std::string exit = worker.end();
    remove(worker);
    if (++failedStarts_ == kMaxFailedStarts) {
        throw WorkersFail(fmt::format("the processes that read files end {} before they are ready",
                                      how.empty() ? exit : how));
    }
}

void Pool::endStoppedWorkers() {
    for (auto worker = workers_.begin(); worker != workers_.end();) {
        WorkerProcess& current = *worker++;
        if (!current.isStopped()) {
            continue;
        }
        // Its earlier answers count, above all that it was ready.
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
        failToStart(worker, "without any answer");
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
