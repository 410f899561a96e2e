// Calls on several threads do not disturb each other.
#include <thread>

#include "support/file_test.h"

namespace veltrace::test {

namespace {

/// What distinguishes the results of two files: warnings, order and every number.
struct Outcome {
    std::vector<zephra::Message> messages;
    std::vector<std::string> names;
    std::vector<double> bitsPerSample;
    std::string byteOrder;
    std::vector<double> gps;

    friend bool operator==(const Outcome&, const Outcome&) = default;
};

Bytes fileNumber(std::uint16_t number) {
    return tiffOf({number % 2 == 0 ? Order::little : Order::big},
                  Dir()
                      .shorts(258, {number, number, number})
                      .nest(34853, Dir().rationals(2, {{number, 1}, {number, 0}, {1, 3}}))
                      .shorts(50000, {number}));
}

Outcome outcomeOf(const MemoryFile& file) {
    const ModuleRun run(file);
    std::vector<double> gps = run.numbers({"GPSInfo", "GPSLatitude"});
    gps.at(1) = 0;  // the NaN of the division by zero
    return {run.messages(), run.fieldNames(), run.numbers({"BitsPerSample"}),
            run.text({"ByteOrder"}), gps};
}

TEST(Threads, EachCallGivesWhatItGivesAlone) {
    constexpr std::size_t kThreads = 8;
    constexpr std::size_t kCallsEach = 50;
    std::vector<std::thread> threads;
    std::vector<std::size_t> agreements(kThreads);
    for (std::size_t t = 0; t < kThreads; ++t) {
        threads.emplace_back([t, &agreements] {
            const MemoryFile file(fileNumber(static_cast<std::uint16_t>(t + 1)));
            const Outcome alone = outcomeOf(file);
            EXPECT_EQ(alone.bitsPerSample, std::vector<double>(3, static_cast<double>(t + 1)));
            EXPECT_EQ(alone.messages.size(), 1U);
            for (std::size_t call = 0; call < kCallsEach; ++call) {
                agreements[t] += outcomeOf(file) == alone ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_THAT(agreements, testing::Each(kCallsEach));
}

}  // namespace

}  // namespace veltrace::test
