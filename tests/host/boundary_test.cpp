// Arguments in, errors and warnings out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <stdexcept>
#include <thread>
#include <unwind.h>

#include "run.h"

namespace foreign {
class Plain {};
class WithoutText : public std::exception {
public:
    [[nodiscard]] const char* what() const noexcept override { return nullptr; }
};
}  // namespace foreign

namespace zephra {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Arguments, ArriveInOrderAndClass) {
    const std::vector<Argument> arguments = {std::string("a\0\xE9", 3), 2.5,
                                             EmptyArgument{qvClassStruct}};
    const CallResult result = runWith(kStrict, arguments, [](qvArray*& /*output*/, auto inputs) {
        ASSERT_EQ(inputs.size(), 3);
        EXPECT_EQ(qvGetClassCode(inputs[0]), 4);
        const auto* const characters = static_cast<qvChar*>(qvGetData(inputs[0]));
        EXPECT_THAT(std::vector(characters, characters + 3), ElementsAre('a', 0, 0x00E9));
        EXPECT_EQ(qvGetClassCode(inputs[1]), 6);
        EXPECT_EQ(*static_cast<double*>(qvGetData(inputs[1])), 2.5);
        EXPECT_EQ(qvGetClassCode(inputs[2]), 2);
    });
    EXPECT_THAT(result.misuses(), IsEmpty());
    EXPECT_EQ(result.leftovers(), Leftovers{});
}

TEST(Arguments, ComeWithOneRequestedOutput) {
    int seenOutputs = -1;
    int seenInputs = -1;
    static_cast<void>(Host().call(
        [&](int outputCount, qvArray* outputs[], int inputCount, const qvArray* /*inputs*/[]) {
            seenOutputs = outputCount;
            seenInputs = inputCount;
            EXPECT_EQ(outputs[0], nullptr);
        },
        {}));
    EXPECT_EQ(seenOutputs, 1);
    EXPECT_EQ(seenInputs, 0);
}

TEST(Warnings, ArriveInOrderWithTheirNewlines) {
    const CallResult result = run([](qvArray*& output) {
        qvxWarnMsgIdAndTxt("a:first", "one\n");
        qvxWarnMsgIdAndTxt("a:second", "two");
        qvxWarnMsgIdAndTxt(nullptr, nullptr);
        output = qvCreateDoubleScalar(1);
    });
    EXPECT_THAT(result.warnings(), ElementsAre(Message{"a:first", "one\n"},
                                               Message{"a:second", "two"}, Message{"", ""}));
    EXPECT_TRUE(result.output());
    EXPECT_EQ(result.error(), std::nullopt);
}

TEST(Errors, EndTheCallAndRunDestructors) {
    bool destroyed = false;
    bool returned = false;
    const CallResult result = run([&] {
        const std::unique_ptr<bool, void (*)(bool*)> guard(&destroyed,
                                                           [](bool* flag) { *flag = true; });
        qvxWarnMsgIdAndTxt("a:warning", "before");
        qvxErrMsgIdAndTxt("a:error", "%d of %s\n", 3, "four");
        returned = true;
    });
    EXPECT_TRUE(destroyed);
    EXPECT_FALSE(returned);
    EXPECT_EQ(result.error(), (Message{"a:error", "3 of four\n"}));
    EXPECT_THAT(result.warnings(), ElementsAre(Message{"a:warning", "before"}));
}

TEST(Errors, PassHandlersOfStandardExceptionsAndThoseThatRethrow) {
    const CallResult result = run([] {
        try {
            qvxErrMsgIdAndTxt("a:b", "through");
        } catch (const std::exception&) {
            ADD_FAILURE() << "the error was caught";
        } catch (...) {
            throw;
        }
    });
    EXPECT_EQ(result.error(), (Message{"a:b", "through"}));
}

std::string textOfForeign(const std::function<void()>& thrower) {
    const CallResult result = run([&](qvArray*& output) {
        output = qvCreateDoubleScalar(1);
        thrower();
    });
    EXPECT_FALSE(result.output());
    EXPECT_EQ(result.error().value_or(Message{}).identifier, "ZEPHRA:host:foreignException");
    return result.error().value_or(Message{}).text;
}

TEST(ForeignExceptions, AreReportedWithTypeAndTextIfThereAreAny) {
    EXPECT_EQ(textOfForeign([] { throw std::runtime_error("boom"); }),
              "The module threw an exception of type std::runtime_error: boom");
    EXPECT_EQ(textOfForeign([] { throw std::bad_alloc(); }),
              "The module threw an exception of type std::bad_alloc: std::bad_alloc");
    // Without a text.
    EXPECT_EQ(textOfForeign([] { throw 7; }), "The module threw an exception of type int");
    EXPECT_EQ(textOfForeign([] { throw foreign::Plain(); }),
              "The module threw an exception of type foreign::Plain");
    EXPECT_EQ(textOfForeign([] { throw foreign::WithoutText(); }),
              "The module threw an exception of type foreign::WithoutText");
    // Exceptions of another language have no type.
    static _Unwind_Exception exception{};
    exception.exception_class = 0x6F74686572;  // no class of C++
    exception.exception_cleanup = [](_Unwind_Reason_Code, _Unwind_Exception*) {};
    EXPECT_EQ(textOfForeign([] { _Unwind_RaiseException(&exception); }),
              "The module threw an exception of an unknown type");
}

TEST(ForeignExceptions, ComeFromAMissingEntryPoint) {
    const CallResult result = Host().call(EntryPoint(), {});
    EXPECT_EQ(result.error().value_or(Message{}).identifier, "ZEPHRA:host:foreignException");
}

TEST(ThreadExit, PassesThroughTheHost) {
    bool returned = false;
    std::thread thread([&] {
        run([](qvArray*& output) {
            output = qvCreateDoubleScalar(1);
            qvMalloc(10);
            pthread_exit(nullptr);
        });
        returned = true;
    });
    thread.join();
    EXPECT_FALSE(returned);
}

TEST(NestedCalls, AreIndependent) {
    std::vector<std::string> inner;
    const CallResult result = run([&](qvArray*& output) {
        qvxWarnMsgIdAndTxt("a:outer", "before");
        const CallResult nested = run([](qvArray*& innerOutput) {
            innerOutput = qvCreateString("inner");
            qvMalloc(3);
            qvxWarnMsgIdAndTxt("a:inner", "inside");
        });
        inner.push_back(nested.output().text());
        EXPECT_THAT(nested.warnings(), ElementsAre(Message{"a:inner", "inside"}));
        EXPECT_EQ(nested.leftovers(), (Leftovers{.blocks = 1, .blockBytes = 3}));

        const CallResult failed = run([] { qvxErrMsgIdAndTxt("a:inner", "failed"); });
        EXPECT_EQ(failed.error(), (Message{"a:inner", "failed"}));

        output = qvCreateString("outer");
        qvxWarnMsgIdAndTxt("a:outer", "after");
    });
    EXPECT_THAT(inner, ElementsAre("inner"));
    EXPECT_EQ(result.output().text(), "outer");
    EXPECT_THAT(result.warnings(),
                ElementsAre(Message{"a:outer", "before"}, Message{"a:outer", "after"}));
    EXPECT_EQ(result.error(), std::nullopt);
}

TEST(NestedCalls, DoNotShareArrays) {
    const CallResult result = runWith({}, {}, [](qvArray*& output) {
        output = makeCell({1});
        qvArray* const mine = qvCreateDoubleScalar(1);
        const CallResult nested = runWith({}, {}, [&](qvArray*& innerOutput) {
            innerOutput = makeCell({1});
            qvSetCell(innerOutput, 0, mine);
            qvSetCell(output, 0, qvCreateDoubleScalar(2));
        });
        EXPECT_FALSE(nested.output().cell(0));
        qvSetCell(output, 0, mine);
    });
    EXPECT_THAT(result.output().cell(0).numbers(), ElementsAre(1));
}

}  // namespace
}  // namespace zephra
