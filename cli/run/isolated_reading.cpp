#include <algorithm>
#include <chrono>
#include <memory>
#include <thread>
#include <utility>

#include "descriptor.h"
#include "render/renderer.h"
#include "run/feed.h"
#include "run/interruption.h"
#include "run/reading.h"

namespace veltrace::cli {
namespace {

/// A wait exceeds its time by more than this only if this process was stopped.
constexpr std::chrono::milliseconds kMaxOversleep{100};
/// Work between two waits, which no worker can prolong. What takes longer waited for something: the
/// output, the list of names, the end of a process.
constexpr std::chrono::milliseconds kMaxWork{10};
/// Long enough for a few small files, and too short to delay a large one noticeably.
constexpr std::chrono::microseconds kGatherTime{150};

class IsolatedReading {
public:
    IsolatedReading(const Reading& reading, const PoolOptions& options, const WorkerSetup& setup)
        : reading_(reading),
          checker_(makeRenderer(setup.render)),
          pool_(options, setup, *checker_,
                [this](std::uint64_t id, Outcome outcome) {
                    reading_.sink.deliver(id, std::move(outcome));
                }),
          feed_(reading.inputs) {}

    std::string run() {
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
        return feed_.error();
    }

private:
    [[nodiscard]] bool hasRoom() const { return pool_.hasRoom() && reading_.sink.hasRoom(); }

    void feed() {
        while (hasRoom()) {
            auto file = feed_.next();
            if (!file) {
                return;
            }
            reading_.sink.expect(file->id, file->path);
            pool_.submit(file->id, std::move(file->path));
        }
    }

    /// Waking this process for each answer takes both sides longer than reading a small file. While
    /// the workers are busy, answers gather.
    void letAnswersGather() {
        if (pool_.isBusy()) {
            std::this_thread::sleep_for(kGatherTime);
        }
    }

    void wait() {
        letAnswersGather();
        // Without room for more files, names that are ready would end every wait.
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
        // If this process was stopped, the workers may have been stopped too.
        if (start < until && workStart_ - kMaxOversleep > until) {
            pool_.postpone(workStart_ - start);
        }
    }

    /// The reader of the output may have been slow.
    void postponeForWork() {
        const auto start = std::exchange(workStart_, Clock::now());
        if (workStart_ - start > kMaxWork) {
            pool_.postpone(workStart_ - start);
        }
    }

    Reading reading_;
    std::unique_ptr<Renderer> checker_;
    Pool pool_;
    Feed feed_;
    std::vector<pollfd> set_;
    Clock::time_point workStart_ = Clock::now();  // of the work between two waits
};

}  // namespace

std::string readIsolated(const Reading& reading, const PoolOptions& options,
                         const WorkerSetup& setup) {
    return IsolatedReading(reading, options, setup).run();
}

}  // namespace veltrace::cli
