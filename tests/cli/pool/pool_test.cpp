#include "pool/pool.h"

#include <csignal>
#include <gmock/gmock.h>
#include <map>
#include <unistd.h>

#include "descriptor.h"
#include "descriptor_limit.h"
#include "pool/scripted_worker.h"
#include "worker/limits.h"

namespace veltrace::cli {
namespace {

using namespace std::chrono_literals;
using testing::SizeIs;

WorkerSetup setupFor(const char* script) {
    WorkerSetup setup;
    setup.render.format = Format::ndjson;
    setup.module = script;
    return setup;
}

/// A pool of scripted workers and what it delivers.
class ScriptedPool {
public:
    explicit ScriptedPool(const char* script, PoolOptions options)
        : checker_(makeRenderer(setupFor(script).render)),
          pool_(options, setupFor(script), *checker_, [this](std::uint64_t id, Outcome outcome) {
              EXPECT_TRUE(outcomes_.emplace(id, std::move(outcome)).second) << id;
          }) {
        static_cast<void>(std::signal(SIGPIPE, SIG_IGN));  // as the command does
    }

    void submit(const char* name) { pool_.submit(submitted_++, name); }

    /// Until every request has its outcome, or a timeout.
    void finish() {
        const auto end = Clock::now() + 20s;
        while (!pool_.isIdle() && Clock::now() < end) {
            step();
        }
        EXPECT_THAT(outcomes_, SizeIs(submitted_));
    }

    void read(const char* name) {
        submit(name);
        finish();
    }

    void postpone(Clock::duration time) { pool_.postpone(time); }

    Status status(std::uint64_t id) { return outcomes_.at(id).status; }
    const Outcome& outcome(std::uint64_t id) { return outcomes_.at(id); }

private:
    void step() {
        std::vector<pollfd> set;
        pool_.addTo(set, 0);
        waitFor(set, std::min(pool_.nextDeadline(), Clock::now() + 1s));
        pool_.handle(set);
        pool_.enforceDeadlines();
    }

    std::unique_ptr<Renderer> checker_;
    Pool pool_;
    std::uint64_t submitted_ = 0;
    std::map<std::uint64_t, Outcome> outcomes_;
};

TEST(Pool, AnswersEveryRequestOnce) {
    ScriptedPool pool(test::kPlain, {.workers = 2});
    for (int i = 0; i < 100; ++i) {
        pool.submit("a");
    }
    pool.finish();
    EXPECT_EQ(pool.status(99), Status::ok);
}

TEST(Pool, ReplacesAWorkerThatAnswersWithoutARequest) {
    ScriptedPool pool(test::kTalkative, {.workers = 1});
    pool.read("a");
    pool.read(test::kPlain);
    EXPECT_EQ(pool.status(0), Status::ok);
    EXPECT_EQ(pool.status(1), Status::ok);
}

TEST(Pool, DoesNotApplyTheTimeLimitToTheStart) {
    ScriptedPool pool(test::kLate, {.workers = 1, .timeLimit = 50ms});
    pool.read("a");
    EXPECT_EQ(pool.status(0), Status::ok);
}

TEST(Pool, EndsAFileAtTheTimeLimit) {
    ScriptedPool pool(test::kSilent, {.workers = 1, .timeLimit = 50ms});
    pool.submit("a");
    pool.read(test::kPlain);
    EXPECT_EQ(pool.status(0), Status::limitTime);
    EXPECT_EQ(pool.status(1), Status::ok);
}

TEST(Pool, ReplacesAWorkerThatStoppedReadingRequestsAtOnce) {
    ScriptedPool pool(test::kDeaf, {.workers = 1, .timeLimit = 1h});
    pool.read("a");
    usleep(100'000);  // until the worker has closed its pipe
    pool.read(test::kPlain);
    EXPECT_EQ(pool.status(1), Status::ok);
}

TEST(Pool, GivesNoFileExtraTimeForAnEarlierPause) {
    ScriptedPool pool(test::kSilent, {.workers = 1, .timeLimit = 50ms});
    pool.read(test::kPlain);
    pool.submit("a");
    pool.postpone(1h);
    pool.finish();
    EXPECT_EQ(pool.status(1), Status::limitTime);
}

TEST(Pool, DoesNotCountAPauseAsReadingTime) {
    ScriptedPool pool(test::kSilent, {.workers = 1, .timeLimit = 300ms});
    pool.read(test::kPlain);
    const auto start = Clock::now();
    pool.submit("a");
    usleep(400'000);
    pool.postpone(400ms);
    pool.finish();
    EXPECT_EQ(pool.status(1), Status::limitTime);
    EXPECT_GE(Clock::now() - start, 600ms);
}

TEST(Pool, PassesNoOtherDescriptorsToItsWorkers) {
    const Descriptor inherited(dup(STDERR_FILENO));  // stays open in programs that are executed
    ScriptedPool pool(test::kOpenHanded, {.workers = 1});
    pool.read("a");
    ASSERT_THAT(pool.outcome(0).warnings, SizeIs(1));
    EXPECT_EQ(pool.outcome(0).warnings.front().text, "0 1 2 3 ");
}

TEST(Pool, ContinuesWithTheWorkersThatCanBeStarted) {
    if (kHasAddressSanitizer) {
        GTEST_SKIP() << "the sanitizers need descriptors of their own";
    }
    ScriptedPool pool(test::kPlain, {.workers = 4});
    pool.submit("a");
    const auto used = static_cast<rlim_t>(Descriptor(dup(STDIN_FILENO)).get());
    const test::DescriptorLimit few(used + 5);  // a worker takes four for a moment, then two
    for (int i = 0; i < 20; ++i) {
        pool.submit("a");
    }
    pool.finish();
    EXPECT_EQ(pool.status(20), Status::ok);
}

TEST(Pool, FailsWithoutAnyWorker) {
    if (kHasAddressSanitizer) {
        GTEST_SKIP() << "the sanitizers need descriptors of their own";
    }
    ScriptedPool pool(test::kPlain, {.workers = 4});
    const test::DescriptorLimit none(0);
    EXPECT_THROW(pool.submit("a"), WorkersFail);
}

}  // namespace
}  // namespace veltrace::cli
