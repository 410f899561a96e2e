#include "pool/pool.h"

#include <algorithm>
#include <fmt/format.h>
#include <system_error>
#include <utility>

#include "zephra/host/module.h"

namespace veltrace::cli {
namespace {

/// Requests that one worker holds: enough that it never waits for the next one.
constexpr std::size_t kMostInFlight = 32;
/// An answer is large beyond this.
constexpr std::size_t kLargeAnswer = std::size_t{64} << 10;

bool isAlone(const WorkerProcess& worker) {
    return worker.load() > 0 && worker.first().isSecondTry;
}

}  // namespace

Pool::Pool(PoolOptions options, const WorkerSetup& setup, const Renderer& checker, Deliver deliver)
    : options_(options),
      setup_(encoded(setup)),
      largestAnswer_(largestAnswer(setup.render.largestOutput)),
      keepsError_(!setup.isConfined),
      checker_(checker),
      deliver_(std::move(deliver)) {}

bool Pool::hasRoom() const {
    if (!waiting_.empty() || !secondTries_.empty()) {
        return false;
    }
    return canStart() || std::ranges::any_of(workers_, [](const WorkerProcess& worker) {
               return !isAlone(worker) && worker.load() < kMostInFlight;
           });
}

void Pool::submit(std::uint64_t id, std::string path) {
    waiting_.push_back({id, std::move(path)});
    dispatch();
}

bool Pool::isIdle() const {
    return waiting_.empty() && secondTries_.empty() &&
           std::ranges::all_of(workers_,
                               [](const WorkerProcess& worker) { return worker.load() == 0; });
}

bool Pool::isBusy() const {
    return !workers_.empty() && std::ranges::all_of(workers_, [](const WorkerProcess& worker) {
        return worker.isReady() && worker.load() > kMostInFlight / 2;
    });
}

/// A file that a process has died of goes to a new one, alone, so that it costs no other file a
/// second time.
void Pool::dispatch() {
    while (!secondTries_.empty() && (canStart() || endIdleWorker()) && start()) {
        workers_.back().send(std::move(secondTries_.front()));
        secondTries_.pop_front();
    }
    while (!waiting_.empty()) {
        WorkerProcess* const worker = leastLoaded();
        if (worker == nullptr) {
            return;
        }
        worker->send(std::move(waiting_.front()));
        waiting_.pop_front();
    }
}

/// Starts one if no idle one is there and another may be.
WorkerProcess* Pool::leastLoaded() {
    WorkerProcess* least = nullptr;
    for (WorkerProcess& worker : workers_) {
        if (!isAlone(worker) && worker.announced() <= kLargeAnswer &&
            worker.load() < kMostInFlight && (least == nullptr || worker.load() < least->load())) {
            least = &worker;
        }
    }
    const bool isIdle = least != nullptr && least->load() == 0;
    return !isIdle && canStart() && start() ? &workers_.back() : least;
}

bool Pool::canStart() const {
    return workers_.size() < options_.workers;
}

/// Makes do with the workers that there are if the system has no room for another.
bool Pool::start() {
    try {
        workers_.emplace_back(setup_, largestAnswer_, keepsError_, options_.timeLimit);
        return true;
    } catch (const std::system_error& error) {
        if (workers_.empty()) {
            throw WorkersFail(error.what());
        }
        options_.workers = workers_.size();
        return false;
    }
}

/// Makes room for a new one.
bool Pool::endIdleWorker() {
    const auto idle = std::ranges::find(workers_, std::size_t{0}, &WorkerProcess::load);
    if (idle == workers_.end()) {
        return false;
    }
    workers_.erase(idle);
    return true;
}

void Pool::addTo(std::vector<pollfd>& set, std::size_t held) {
    for (WorkerProcess& worker : workers_) {
        // One that fails is noticed when its answers have been taken.
        static_cast<void>(worker.flush());
        if (isHeldBack(worker, held)) {
            worker.restartTime();
        } else {
            set.push_back({worker.answerDescriptor(), POLLIN, 0});
        }
        if (worker.hasUnsent()) {
            set.push_back({worker.requestDescriptor(), POLLOUT, 0});
        }
    }
}

/// Large answers come one after the other when memory for all is short; the oldest request is never
/// held back, so that every answer comes in the end.
bool Pool::isHeldBack(const WorkerProcess& worker, std::size_t held) const {
    if (worker.announced() <= kLargeAnswer || worker.load() == 0) {
        return false;
    }
    for (const WorkerProcess& other : workers_) {
        if (other.announced() > kLargeAnswer) {
            held += other.announced();
        }
    }
    return held > options_.heldBytes &&
           std::ranges::any_of(workers_, [&](const WorkerProcess& other) {
               return other.load() > 0 && other.first().id < worker.first().id;
           });
}

Clock::time_point Pool::nextDeadline() const {
    auto next = Clock::time_point::max();
    for (const WorkerProcess& worker : workers_) {
        next = std::min(next, worker.deadline().value_or(next));
    }
    return next;
}

void Pool::handle(std::span<const pollfd> set) {
    // No worker is started meanwhile, so a descriptor is always that of the same one.
    for (const pollfd& entry : set) {
        if (entry.revents != 0) {
            handleReady(entry.fd);
        }
    }
    dispatch();
}

void Pool::handleReady(int descriptor) {
    const auto worker = std::ranges::find_if(workers_, [&](const WorkerProcess& candidate) {
        return descriptor == candidate.answerDescriptor() ||
               descriptor == candidate.requestDescriptor();
    });
    if (worker == workers_.end()) {
        return;  // gone since, or not of a worker
    }
    if (descriptor == worker->answerDescriptor()) {
        receiveFrom(*worker);
    } else if (!worker->flush()) {
        fail(*worker, "after it had stopped taking requests");
    }
}

void Pool::receiveFrom(WorkerProcess& worker) {
    const bool goesOn = worker.receive();
    if (takeAnswers(worker) && !goesOn) {
        fail(worker, "");
    }
}

bool Pool::takeAnswers(WorkerProcess& worker) {
    try {
        while (const auto frame = worker.nextFrame()) {
            const bool goesOn =
                worker.isReady() ? takeAnswer(worker, *frame) : takeReadiness(worker, *frame);
            if (!goesOn) {
                return false;
            }
        }
        if (worker.load() == 0 && worker.pending() > 0) {
            // Would count as busy for ever, as no time limit runs.
            throw BadFrame("it begins to answer what it was not asked");
        }
        return true;
    } catch (const BadFrame& error) {
        fail(worker, fmt::format("after it had sent what it should not: {}", error.what()));
        return false;
    }
}

bool Pool::takeReadiness(WorkerProcess& worker, const Frame& frame) {
    if (frame.sequence != kSetupSequence) {
        throw BadFrame("it answers before it is ready");
    }
    if (!frame.payload.empty()) {
        throw zephra::LoadError(std::string(frame.payload));
    }
    failedStarts_ = 0;
    worker.becomeReady();
    return true;
}

bool Pool::takeAnswer(WorkerProcess& worker, const Frame& frame) {
    if (worker.load() == 0 || frame.sequence != worker.first().id) {
        throw BadFrame("it answers what it was not asked");
    }
    Answer answer = decodedAnswer(frame.payload);
    if (!answer.outcome.error && !checker_.accepts(answer.outcome.rendering)) {
        throw BadFrame("its output is not in the format");
    }
    const Request request = worker.finishFirst();
    if (answer.wantsReplacement) {
        remove(worker);
    }
    deliver_(request.id, std::move(answer.outcome));
    return !answer.wantsReplacement;
}

}  // namespace veltrace::cli
