#include "wire/exchange.h"

#include <gtest/gtest.h>

#include "wire/bytes.h"

namespace veltrace::cli {
namespace {

std::string bytesOf(const Answer& answer) {
    std::string bytes;
    encode(answer, bytes);
    return bytes;
}

Answer fullAnswer() {
    Answer answer;
    answer.outcome.status = Status::warned;
    answer.outcome.warnings = {{"a:b", "first\n"}, {"c", std::string("NUL \0 inside", 12)}};
    answer.outcome.elapsedMicroseconds = 1234;
    answer.outcome.rendering = {"[{\"A\":1}]", "{}", "\"/info/0/B\"", "", {0, 2}};
    return answer;
}

Answer failed(Status status) {
    return {failure(status, "id", "text"), false};
}

TEST(Setup, ArrivesAsItWasSent) {
    WorkerSetup setup;
    setup.render = {Format::csv, {"A.B", ""}, 7, 99, true, 1 << 20};
    setup.module = "/lib/veltrace.so";
    setup.memoryLimit = 1ULL << 40;
    setup.isConfined = false;
    setup.parent = 4711;
    const WorkerSetup received = decodedSetup(encoded(setup));
    EXPECT_EQ(received.render.format, Format::csv);
    EXPECT_EQ(received.render.fields, (std::vector<std::string>{"A.B", ""}));
    EXPECT_EQ(received.render.maxValues, 7U);
    EXPECT_EQ(received.render.omitLargerThan, 99U);
    EXPECT_TRUE(received.render.colour);
    EXPECT_EQ(received.render.largestOutput, 1U << 20);
    EXPECT_EQ(received.module, "/lib/veltrace.so");
    EXPECT_EQ(received.memoryLimit, 1ULL << 40);
    EXPECT_FALSE(received.isConfined);
    EXPECT_EQ(received.parent, 4711);
}

TEST(Setup, MayOmitNothing) {
    EXPECT_EQ(decodedSetup(encoded(WorkerSetup{})).render.omitLargerThan, std::nullopt);
}

TEST(Setup, WithAnyByteChangedIsRefusedOrAnotherOne) {
    const std::string bytes = encoded(WorkerSetup{});
    int refused = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        std::string changed = bytes;
        changed[i] = '\x7f';
        try {
            EXPECT_EQ(encoded(decodedSetup(changed)), changed) << i;
        } catch (const BadFrame&) {
            ++refused;
        }
    }
    EXPECT_GT(refused, 40);
}

TEST(Answer, ArrivesAsItWasSent) {
    const Answer sent = fullAnswer();
    const Answer received = decodedAnswer(bytesOf(sent));
    EXPECT_FALSE(received.wantsReplacement);
    EXPECT_EQ(received.outcome.status, Status::warned);
    EXPECT_EQ(received.outcome.error, std::nullopt);
    EXPECT_EQ(received.outcome.warnings, sent.outcome.warnings);
    EXPECT_EQ(received.outcome.warningsDropped, 0U);
    EXPECT_EQ(received.outcome.elapsedMicroseconds, 1234U);
    EXPECT_EQ(received.outcome.rendering, sent.outcome.rendering);
}

TEST(Answer, OfAFailureHasItsError) {
    for (const Status status : {Status::error, Status::limitMemory, Status::unreadable}) {
        const Answer received = decodedAnswer(bytesOf({failure(status, "id", "text"), true}));
        EXPECT_TRUE(received.wantsReplacement);
        EXPECT_EQ(received.outcome.status, status);
        EXPECT_EQ(received.outcome.error, (zephra::Message{"id", "text"}));
    }
}

TEST(Answer, ThatIsCutShortOrTooLongIsRefused) {
    const std::string bytes = bytesOf(fullAnswer());
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        EXPECT_THROW(static_cast<void>(decodedAnswer(bytes.substr(0, size))), BadFrame) << size;
    }
    EXPECT_THROW(static_cast<void>(decodedAnswer(bytes + '\0')), BadFrame);
}

TEST(Answer, WithAnyByteChangedIsReadOrRefused) {
    const std::string bytes = bytesOf(fullAnswer());
    int refused = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        for (const char value : {'\x00', '\x7f', '\x80', '\xff'}) {
            std::string changed = bytes;
            changed[i] = value;
            try {
                static_cast<void>(decodedAnswer(changed));
            } catch (const BadFrame&) {
                ++refused;
            }
        }
    }
    EXPECT_GT(refused, 100);
}

TEST(Answer, WithAStatusThatOnlyTheParentKnowsIsRefused) {
    for (const Status status : {Status::limitTime, Status::crashed}) {
        EXPECT_THROW(static_cast<void>(decodedAnswer(bytesOf(failed(status)))), BadFrame);
    }
}

TEST(Answer, WhoseStatusAndMessagesDisagreeIsRefused) {
    Answer okWithError = failed(Status::error);
    okWithError.outcome.status = Status::ok;
    Answer errorWithout = failed(Status::error);
    errorWithout.outcome.error.reset();
    Answer okWithWarning = fullAnswer();
    okWithWarning.outcome.status = Status::ok;
    Answer warnedWithout = fullAnswer();
    warnedWithout.outcome.warnings.clear();
    Answer droppedTooEarly = fullAnswer();
    droppedTooEarly.outcome.warningsDropped = 1;
    Answer errorWithOutput = failed(Status::error);
    errorWithOutput.outcome.rendering.body = "[]";
    for (const Answer& answer : {okWithError, errorWithout, okWithWarning, warnedWithout,
                                 droppedTooEarly, errorWithOutput}) {
        EXPECT_THROW(static_cast<void>(decodedAnswer(bytesOf(answer))), BadFrame);
    }
}

TEST(Answer, WithMoreWarningsThanARecordKeepsIsRefused) {
    Answer answer = fullAnswer();
    answer.outcome.warnings.assign(kMostWarnings, {"id", "text"});
    answer.outcome.warningsDropped = 5;
    EXPECT_EQ(decodedAnswer(bytesOf(answer)).outcome.warnings.size(), 1000U);
    answer.outcome.warnings.push_back({"id", "text"});
    EXPECT_THROW(static_cast<void>(decodedAnswer(bytesOf(answer))), BadFrame);
}

TEST(Answer, WithMessagesTooLongForARecordIsRefused) {
    Answer answer = failed(Status::error);
    answer.outcome.error->text.assign(kMostMessageBytes - 2, '\x1b');  // behind "id"
    EXPECT_EQ(messageBytes(decodedAnswer(bytesOf(answer)).outcome), kMostMessageBytes);
    answer.outcome.warnings.push_back({"", "x"});
    EXPECT_THROW(static_cast<void>(decodedAnswer(bytesOf(answer))), BadFrame);
}

}  // namespace
}  // namespace veltrace::cli
