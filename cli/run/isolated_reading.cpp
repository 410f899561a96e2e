#include <algorithm>
#include <chrono>
#include <memory>
#include <thread>
#include <utility>

#include "render/renderer.h"
#include "run/feed.h"
#include "run/interruption.h"
#include "run/reading.h"
#include "run/wait.h"

namespace veltrace::cli {
namespace {

/// Longer than a wait that was asked for takes unless this process was stopped.
constexpr std::chrono::milliseconds kOversleep{100};
/// Work between two waits that no worker can make longer, piece by piece, at its own pace. What
/// takes longer waited for something: the output, the list of names, the end of a process.
constexpr std::chrono::milliseconds kWork{10};
/// A few small files are read in this time, and a large one does not get noticeably later.
constexpr std::chrono::microseconds kGathering{150};

class IsolatedReading {
public:
    IsolatedReading(const Reading& reading, const PoolOptions& options, const WorkerSetup& setup)
        : reading_(reading),
          checker_(makeRenderer(setup.render)),
          pool_(options, setup, *checker_,
                [this](std::uint64_t sequence, Outcome outcome) {
                    reading_.sink.deliver(sequence, std::move(outcome));
                }),
          feed_(reading.inputs) {}

    Ending run() {
        while (interruption() == 0) {
            feed();
            if (feed_.isAtEnd() && pool_.isIdle()) {
                break;
            }
            reading_.sink.flush();
            wait();
            reading_.progress.show(reading_.sink.tally(),
                                   reading_.total ? reading_.total : feed_.total());
        }
        return feed_.ending();
    }

private:
    [[nodiscard]] bool hasRoom() const { return pool_.hasRoom() && reading_.sink.hasRoom(); }

    void feed() {
        while (hasRoom()) {
            auto file = feed_.next();
            if (!file) {
                return;
            }
            reading_.sink.expect(file->sequence, file->path);
            pool_.submit(file->sequence, std::move(file->path));
        }
    }

    /// A process that sleeps is woken for every answer, which costs both sides more than a small
    /// file does. While the workers have enough to do, answers are left to gather.
    void letAnswersGather() {
        if (pool_.isBusy()) {
            std::this_thread::sleep_for(kGathering);
        }
    }

    void wait() {
        // Names that are not taken now would be ready all the time.
        letAnswersGather();
        set_ = {{wakeUpDescriptor(), POLLIN, 0}, {hasRoom() ? feed_.descriptor() : -1, POLLIN, 0}};
        pool_.addTo(set_, reading_.sink.heldBytes());
        waitForReady();
        pool_.handle(set_);
        if (set_.front().revents != 0) {
            forgetWakeUp();
            if (takeChildChange()) {
                pool_.endStoppedWorkers();
            }
        }
        postponeForWork();
        pool_.enforceDeadlines();
    }

    void waitForReady() {
        postponeForWork();
        const auto start = Clock::now();
        const auto until = std::min(pool_.nextDeadline(), reading_.progress.nextUpdate());
        waitFor(set_, until);
        workStart_ = Clock::now();
        // Whatever stopped this process may have stopped the workers too.
        if (start < until && workStart_ - kOversleep > until) {
            pool_.postpone(workStart_ - start);
        }
    }

    /// Whoever takes the records may have been slow.
    void postponeForWork() {
        const auto start = std::exchange(workStart_, Clock::now());
        if (workStart_ - start > kWork) {
            pool_.postpone(workStart_ - start);
        }
    }

    Reading reading_;
    std::unique_ptr<Renderer> checker_;
    Pool pool_;
    Feed feed_;
    std::vector<pollfd> set_;
    Clock::time_point workStart_ = Clock::now();  // of what is done between two waits
};

}  // namespace

Ending readIsolated(const Reading& reading, const PoolOptions& options, const WorkerSetup& setup) {
    return IsolatedReading(reading, options, setup).run();
}

}  // namespace veltrace::cli
