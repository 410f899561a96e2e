// As many calls at once as a busy host makes: each gives what it gives alone.
#include <atomic>
#include <cstdlib>
#include <iostream>
#include <latch>
#include <memory>
#include <thread>

#include "support/file_test.h"
#include "support/leak_tolerance.h"
#include "support/nested_file.h"
#include "sweep/seeds.h"
#include "sweep/value_difference.h"

namespace veltrace::test {

namespace {

constexpr std::size_t kThreads = 32;
constexpr std::size_t kUsualRounds = 4;

/// How often each thread reads every file; VELTRACE_THREAD_ROUNDS for longer runs.
std::size_t rounds() {
    const char* const wanted = std::getenv("VELTRACE_THREAD_ROUNDS");
    return wanted == nullptr ? kUsualRounds : std::strtoul(wanted, nullptr, 10);
}

zephra::CallResult resultOf(const std::string& name) {
    const zephra::Argument argument{name};
    const LeakTolerance tolerance;  // for reads that end by an unknown exception
    return zephra::Host(strictHost()).call(moduleUnderTest(), {&argument, 1});
}

/// In what way they differ; empty when they do not.
std::string differenceOfResults(const zephra::CallResult& left, const zephra::CallResult& right) {
    if (left.warnings() != right.warnings()) {
        return "warnings";
    }
    if (left.error() != right.error()) {
        return "error " + testing::PrintToString(left.error()) + " or " +
               testing::PrintToString(right.error());
    }
    if (!(left.leftovers() == right.leftovers())) {
        return "leftovers";
    }
    if (!left.misuses().empty()) {
        return "misuse of the host: " + left.misuses().front();
    }
    return differenceOf(left.output(), right.output());
}

/// A file that all threads read, and what came of it when it was read alone.
class SharedFile {
public:
    explicit SharedFile(const Bytes& content)
        : file_(std::make_unique<MemoryFile>(content)), name_(file_->name()) {
        file_->setModificationTime(1'000'000'000);
        alone_ = std::make_unique<zephra::CallResult>(resultOf(name_));
    }

    [[nodiscard]] std::string differenceNow() const {
        return differenceOfResults(resultOf(name_), *alone_);
    }
    [[nodiscard]] const zephra::CallResult& alone() const { return *alone_; }

private:
    std::unique_ptr<MemoryFile> file_;
    std::string name_;
    std::unique_ptr<zephra::CallResult> alone_;
};

/// Sound ones of each format, in both byte orders, and damaged ones: cut short, or with one byte
/// changed.
std::vector<SharedFile> mixedFiles() {
    std::vector<SharedFile> files;
    for (const Seed& seed : seeds()) {
        Bytes cut = seed.little;
        cut.resize(cut.size() * 2 / 3);
        Bytes damaged = seed.big;
        damaged[damaged.size() / 2] ^= 0xFFU;
        for (const Bytes& content : {seed.little, seed.big, cut, damaged}) {
            files.emplace_back(content);
        }
    }
    for (const std::size_t depth : {10U, 200U}) {
        files.emplace_back(nestedExif(depth));
    }
    for (const Bytes& unrecognised : {Bytes{}, bytesOf("kiln"), Bytes{'M', 'M', 0, 43}}) {
        files.emplace_back(unrecognised);
    }
    return files;
}

/// Runs `body` with the number of the thread on all threads, which start together.
template <class Body>
void onAllThreads(const Body& body) {
    std::latch start(kThreads);
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < kThreads; ++t) {
        threads.emplace_back([t, &start, &body] {
            start.arrive_and_wait();
            body(t);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST(ConcurrentCalls, OnAMixOfFilesGiveWhatEachGivesAlone) {
    const std::vector<SharedFile> files = mixedFiles();
    const auto failed = std::ranges::count_if(
        files, [](const SharedFile& file) { return file.alone().error().has_value(); });
    EXPECT_GT(failed, 10);
    EXPECT_GT(std::ssize(files) - failed, 40);

    std::atomic<std::size_t> calls = 0;
    onAllThreads([&](std::size_t thread) {
        for (std::size_t i = 0; i < rounds() * files.size(); ++i) {
            // Each thread begins elsewhere.
            const SharedFile& file = files[(i + thread * 7) % files.size()];
            ASSERT_EQ(file.differenceNow(), "");
            ++calls;
        }
    });
    EXPECT_EQ(calls, kThreads * rounds() * files.size());
    std::cout << "threads: " << calls << " calls on " << files.size() << " files\n";
}

TEST(ConcurrentCalls, OnOneFileGiveWhatEachGivesAlone) {
    std::atomic<std::size_t> calls = 0;
    for (const Seed& seed : seeds()) {
        const SharedFile file(seed.little);
        onAllThreads([&](std::size_t) {
            for (std::size_t i = 0; i < rounds(); ++i) {
                ASSERT_EQ(file.differenceNow(), "") << seed.name;
                ++calls;
            }
        });
    }
    EXPECT_EQ(calls, kThreads * rounds() * seeds().size());
    std::cout << "threads: " << calls << " calls on " << seeds().size()
              << " files, one after the other\n";
}

// Each of these calls uses up the stack of its thread and leaves its reader behind.
TEST(ConcurrentCalls, OnAFileThatNestsWithoutEndAllEndAsStated) {
    const MemoryFile file(endlessExif());
    const std::optional<zephra::Message> expected = unknownException();
    std::atomic<std::size_t> calls = 0;
    onAllThreads([&](std::size_t) {
        runOnStack(std::size_t{512} * 1024, [&] {
            EXPECT_EQ(resultOf(file.name()).error(), expected);
            ++calls;
        });
    });
    EXPECT_EQ(calls, kThreads);
    std::cout << "threads: " << calls << " calls on a file that nests without end\n";
}

}  // namespace

}  // namespace veltrace::test
