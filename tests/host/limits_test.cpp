// Limits and budgets.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

#include "run.h"

// So that a request beyond all memory is refused, not reported, by a checking allocator.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}

namespace zephra {
namespace {

using testing::IsEmpty;

constexpr std::size_t kMax = std::numeric_limits<std::size_t>::max();

TEST(LargestBlock, LimitsBlocksAndTheElementsOfEachKindOfArray) {
    runWith({.largestBlock = 16}, {}, [] {
        EXPECT_NE(qvMalloc(16), nullptr);
        EXPECT_EQ(qvMalloc(17), nullptr);
        EXPECT_EQ(qvMalloc(kMax), nullptr);
        EXPECT_NE(makeNumeric({2}), nullptr);
        EXPECT_EQ(makeNumeric({3}), nullptr);
        EXPECT_NE(makeNumeric({1}, qvClassDouble, qvComplex), nullptr);
        EXPECT_EQ(makeNumeric({2}, qvClassDouble, qvComplex), nullptr);
        EXPECT_NE(makeNumeric({16}, qvClassLogical), nullptr);
        EXPECT_EQ(makeNumeric({17}, qvClassLogical), nullptr);
        EXPECT_NE(makeChar({8}), nullptr);
        EXPECT_EQ(makeChar({9}), nullptr);
        EXPECT_NE(qvCreateString("12345678"), nullptr);
        EXPECT_EQ(qvCreateString("123456789"), nullptr);
        EXPECT_NE(makeCell({2}), nullptr);
        EXPECT_EQ(makeCell({3}), nullptr);
        EXPECT_NE(makeStruct({1}, {"a", "b"}), nullptr);
        EXPECT_EQ(makeStruct({2}, {"a", "b"}), nullptr);
    });
}

TEST(LargestBlock, DoesNotLimitArguments) {
    const CallResult result =
        runWith({.largestBlock = 4}, {std::string("longer than that")}, [](qvArray*&, auto inputs) {
            EXPECT_EQ(static_cast<qvChar*>(qvGetData(inputs[0]))[15], 't');
            qvArrayToString(inputs[0]);
        });
    EXPECT_EQ(result.error(), (Message{"ZEPHRA:host:outOfMemory", "Out of memory."}));
}

TEST(ExhaustedMemory, ReturnsNull) {
    const CallResult result = runWith({.largestBlock = kMax}, {}, [] {
        EXPECT_EQ(qvMalloc(kMax), nullptr);
        EXPECT_EQ(qvMalloc(kMax / 2), nullptr);
        EXPECT_EQ(makeNumeric({kMax / 32}), nullptr);
        EXPECT_EQ(makeCell({kMax / 32}), nullptr);
        EXPECT_EQ(makeStruct({kMax / 32}, {"a"}), nullptr);
    });
    EXPECT_EQ(result.leftovers(), Leftovers{});
}

TEST(FailBlock, RefusesOneRequest) {
    for (std::uint64_t failing = 1; failing <= 3; ++failing) {
        runWith({.failBlock = failing}, {}, [&] {
            for (std::uint64_t request = 1; request <= 3; ++request) {
                EXPECT_EQ(qvMalloc(8) == nullptr, request == failing) << failing;
            }
        });
    }
}

TEST(FailBlock, RaisesAHostErrorForText) {
    bool returned = false;
    const CallResult result =
        runWith({.failBlock = 2}, {std::string("text")}, [&](qvArray*& /*output*/, auto inputs) {
            EXPECT_STREQ(qvArrayToString(inputs[0]), "text");
            qvArrayToString(inputs[0]);
            returned = true;
        });
    EXPECT_FALSE(returned);
    EXPECT_EQ(result.error(), (Message{"ZEPHRA:host:outOfMemory", "Out of memory."}));
    EXPECT_EQ(result.leftovers(), (Leftovers{.blocks = 1, .blockBytes = 5}));
}

TEST(FailArray, RefusesOneRequestOfAnyKind) {
    for (std::uint64_t failing = 1; failing <= 6; ++failing) {
        const CallResult result = runWith({.failArray = failing, .strict = true}, {}, [&] {
            const std::vector<qvArray*> made = {qvCreateDoubleScalar(1), makeNumeric({1}),
                                                makeChar({1}),           makeCell({1}),
                                                makeStruct({1}, {"a"}),  qvCreateString("text")};
            for (std::size_t i = 0; i < made.size(); ++i) {
                EXPECT_EQ(made[i] == nullptr, i + 1 == failing) << i;
            }
        });
        EXPECT_EQ(result.leftovers(), (Leftovers{.arrays = 5}));
        EXPECT_THAT(result.misuses(), IsEmpty());
    }
}

TEST(BlockBudget, LimitsRequests) {
    for (std::uint64_t budget = 1; budget <= 3; ++budget) {
        const CallResult result = runWith({.blockBudget = budget}, {}, [&] {
            for (std::uint64_t request = 1; request <= 3; ++request) {
                void* const block = qvMalloc(8);
                EXPECT_EQ(block == nullptr, request > budget) << budget;
                qvFree(block);
            }
        });
        EXPECT_EQ(result.requests(), (Requests{.blocks = 3, .arrays = 0}));
    }
}

TEST(ArrayBudget, LimitsRequestsOfAnyKind) {
    for (std::uint64_t budget = 1; budget <= 4; ++budget) {
        const CallResult result = runWith({.arrayBudget = budget}, {}, [&] {
            const std::vector<qvArray*> made = {qvCreateDoubleScalar(1), makeChar({1}),
                                                makeStruct({1}, {"a"}), qvCreateString("text")};
            for (std::size_t i = 0; i < made.size(); ++i) {
                EXPECT_EQ(made[i] == nullptr, i >= budget) << i;
            }
        });
        EXPECT_EQ(result.requests(), (Requests{.blocks = 0, .arrays = 4}));
    }
}

TEST(Budgets, OfZeroAreUnlimited) {
    const CallResult result = runWith({.blockBudget = 0, .arrayBudget = 0}, {}, [] {
        for (int request = 0; request < 1000; ++request) {
            EXPECT_NE(qvMalloc(1), nullptr);
            EXPECT_NE(qvCreateDoubleScalar(1), nullptr);
        }
    });
    EXPECT_EQ(result.requests(), (Requests{.blocks = 1000, .arrays = 1000}));
}

TEST(Settings, ApplyToEachCallSeparately) {
    const Host host({.failBlock = 1});
    for (int call = 0; call < 2; ++call) {
        static_cast<void>(host.call(
            [](int, qvArray**, int, const qvArray**) {
                EXPECT_EQ(qvMalloc(1), nullptr);
                EXPECT_NE(qvMalloc(1), nullptr);
            },
            {}));
    }
}

}  // namespace
}  // namespace zephra
