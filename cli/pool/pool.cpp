#include "pool/pool.h"

#include <algorithm>
#include <fmt/format.h>
#include <system_error>
#include <utility>

#include "zephra/host/module.h"

#include "render/csv_renderer.h"

namespace veltrace::cli {
namespace {

/// Requests of one worker: enough that it never waits for the next one.
constexpr std::size_t kMaxInFlight = 32;
/// Larger answers are large.
constexpr std::size_t kLargeAnswer = std::size_t{64} << 10;

bool isAlone(const WorkerProcess& worker) {
    return worker.load() > 0 && worker.first().isSecondTry;
}

}  // namespace

Pool::Pool(PoolOptions options, const WorkerSetup& setup, const Renderer& checker, Deliver deliver)
    : options_(options),
      setup_(encoded(setup)),
      maxFields_(csvFields(setup.render).size()),
      maxAnswer_(maxAnswer(setup.render.maxOutput, maxFields_)),
      keepsError_(!setup.isSandboxed),
      checker_(checker),
      deliver_(std::move(deliver)) {}

bool Pool::hasRoom() const {
    if (!waiting_.empty() || !secondTries_.empty()) {
        return false;
    }
    return canStart() || std::ranges::any_of(workers_, [](const WorkerProcess& worker) {
               return !isAlone(worker) && worker.load() < kMaxInFlight;
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
        return worker.isReady() && worker.load() > kMaxInFlight / 2;
    });
}

/// A file that crashed its worker goes to a new one, alone, so that no other file fails with it.
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

/// Starts a worker if none is idle and another is allowed.
WorkerProcess* Pool::leastLoaded() {
    WorkerProcess* least = nullptr;
    for (WorkerProcess& worker : workers_) {
        if (!isAlone(worker) && worker.announced() <= kLargeAnswer &&
            worker.load() < kMaxInFlight && (least == nullptr || worker.load() < least->load())) {
            least = &worker;
        }
    }
    const bool isIdle = least != nullptr && least->load() == 0;
    return !isIdle && canStart() && start() ? &workers_.back() : least;
}

bool Pool::canStart() const {
    return workers_.size() < options_.workers;
}

/// If the system has no room for another worker, the pool continues with those it has.
bool Pool::start() {
    try {
        workers_.emplace_back(setup_, maxAnswer_, keepsError_, options_.timeLimit);
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
        // A failure is noticed when its answers have been received.
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

/// Large answers are received one at a time when memory is short. The oldest request is never held
/// back, so that every answer arrives in the end.
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
    // No worker is started meanwhile, so a descriptor always belongs to the same one.
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
        return;  // of a worker that was removed, or of none
    }
    if (descriptor == worker->answerDescriptor()) {
        receiveFrom(*worker);
    } else if (!worker->flush()) {
        fail(*worker, "after it stopped reading requests");
    }
}

void Pool::receiveFrom(WorkerProcess& worker) {
    const bool isOpen = worker.receive();
    if (takeAnswers(worker) && !isOpen) {
        fail(worker, "");
    }
}

bool Pool::takeAnswers(WorkerProcess& worker) {
    try {
        while (const auto frame = worker.nextFrame()) {
            const bool isKept =
                worker.isReady() ? takeAnswer(worker, *frame) : takeReadiness(worker, *frame);
            if (!isKept) {
                return false;
            }
        }
        if (worker.load() == 0 && worker.pending() > 0) {
            // It would stay busy forever, as no time limit runs.
            throw BadFrame("it answers without a request");
        }
        return true;
    } catch (const BadFrame& error) {
        fail(worker, fmt::format("after it sent an invalid answer: {}", error.what()));
        return false;
    }
}

bool Pool::takeReadiness(WorkerProcess& worker, const Frame& frame) {
    if (frame.id != kSetupId) {
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
    if (worker.load() == 0 || frame.id != worker.first().id) {
        throw BadFrame("its answer does not match its oldest request");
    }
    Answer answer = decodedAnswer(frame.payload, maxFields_);
    if (!answer.outcome.error && !checker_.accepts(answer.outcome.rendering)) {
        throw BadFrame("its output does not have the format");
    }
    const Request request = worker.finishFirst();
    if (answer.wantsReplacement) {
        remove(worker);
    }
    deliver_(request.id, std::move(answer.outcome));
    return !answer.wantsReplacement;
}

}  // namespace veltrace::cli
