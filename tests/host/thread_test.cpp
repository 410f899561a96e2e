// Calls on several threads at once.
#include <atomic>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>

#include "run.h"

namespace zephra {
namespace {

TEST(Threads, AreIndependent) {
    constexpr int kThreads = 4;
    constexpr int kCalls = 200;
    const Host host({.failBlock = 2, .strict = true});
    std::atomic<int> good = 0;
    const auto work = [&](int number) {
        const std::string name = "thread " + std::to_string(number);
        const std::vector<Argument> arguments = {name};
        for (int call = 0; call < kCalls; ++call) {
            const CallResult result = host.call(
                [](int, qvArray* outputs[], int, const qvArray* inputs[]) {
                    char* const text = qvArrayToString(inputs[0]);
                    outputs[0] = makeCell({1});
                    qvSetCell(outputs[0], 0, qvCreateString(text));
                    qvxWarnMsgIdAndTxt("a:b", text);
                    std::this_thread::yield();
                    qvMalloc(1);  // the second request, refused in each call
                    qvMalloc(static_cast<std::size_t>(text[7] - '0'));
                },
                arguments);
            const Leftovers expected{
                .blocks = 2, .blockBytes = name.size() + 1 + static_cast<std::size_t>(number)};
            good += result.output().cell(0).text() == name &&
                    result.warnings() == std::vector{Message{"a:b", name}} &&
                    result.leftovers() == expected && result.misuses().empty();
        }
    };
    std::vector<std::thread> threads;
    for (int number = 0; number < kThreads; ++number) {
        threads.emplace_back(work, number);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(good, kThreads * kCalls);
}

TEST(Threads, OfAModuleHaveNoCall) {
    const CallResult result = run([](qvArray*& output) {
        std::thread([&] { EXPECT_EQ(qvCreateDoubleScalar(1), nullptr); }).join();
        output = qvCreateDoubleScalar(2);
    });
    EXPECT_TRUE(result.output());
}

TEST(Threads, MayReadAResultTogether) {
    const CallResult result = run([](qvArray*& output) {
        output = makeStruct({1}, {"Text"});
        qvSetField(output, 0, "Text", qvCreateString("shared"));
    });
    std::atomic<int> good = 0;
    const auto work = [&] { good += result.output().field(0, "Text").text() == "shared"; };
    std::thread first(work);
    std::thread second(work);
    first.join();
    second.join();
    EXPECT_EQ(good, 2);
}

}  // namespace
}  // namespace zephra
