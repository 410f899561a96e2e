#include "wire/exchange.h"

#include <cstring>
#include <gtest/gtest.h>

#include "wire/bytes.h"

namespace veltrace::cli {
namespace {

std::string bytesOf(const Answer& answer) {
    std::string bytes;
    encode(answer, bytes);
    return bytes;
}

constexpr std::size_t kFields = 3;

Answer decoded(std::string_view payload) {
    return decodedAnswer(payload, kFields);
}

Answer fullAnswer() {
    Answer answer;
    answer.outcome.status = Status::warned;
    answer.outcome.warnings = {{"a:b", "first\n"}, {"c", std::string("NUL \0 inside", 12)}};
    answer.outcome.elapsedMicroseconds = 1234;
    answer.outcome.rendering = {
        "[{\"A\":1}]", "{}", "\"/info/0/B\"", "", {"2", "", "a\"b\\", "\x1b\xff"}, {0, 2}};
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
    setup.isSandboxed = false;
    setup.parent = 4711;
    const WorkerSetup received = decodedSetup(encoded(setup));
    EXPECT_EQ(received.render.format, Format::csv);
    EXPECT_EQ(received.render.fields, (std::vector<std::string>{"A.B", ""}));
    EXPECT_EQ(received.render.maxValues, 7U);
    EXPECT_EQ(received.render.omitLargerThan, 99U);
    EXPECT_TRUE(received.render.colour);
    EXPECT_EQ(received.render.maxOutput, 1U << 20);
    EXPECT_EQ(received.module, "/lib/veltrace.so");
    EXPECT_EQ(received.memoryLimit, 1ULL << 40);
    EXPECT_FALSE(received.isSandboxed);
    EXPECT_EQ(received.parent, 4711);
    EXPECT_EQ(decodedSetup(encoded(WorkerSetup{})).render.omitLargerThan, std::nullopt);
}

TEST(Setup, WithAnyByteChangedIsRejectedOrDifferent) {
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
    const Answer received = decoded(bytesOf(sent));
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
        const Answer received = decoded(bytesOf({failure(status, "id", "text"), true}));
        EXPECT_TRUE(received.wantsReplacement);
        EXPECT_EQ(received.outcome.status, status);
        EXPECT_EQ(received.outcome.error, (zephra::Message{"id", "text"}));
    }
}

TEST(Answer, ThatIsTooShortOrTooLongIsRejected) {
    const std::string bytes = bytesOf(fullAnswer());
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        EXPECT_THROW(static_cast<void>(decoded(bytes.substr(0, size))), BadFrame) << size;
    }
    EXPECT_THROW(static_cast<void>(decoded(bytes + '\0')), BadFrame);
}

TEST(Answer, WithAnyByteChangedIsReadOrRejected) {
    const std::string bytes = bytesOf(fullAnswer());
    int refused = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        for (const char value : {'\x00', '\x7f', '\x80', '\xff'}) {
            std::string changed = bytes;
            changed[i] = value;
            try {
                static_cast<void>(decoded(changed));
            } catch (const BadFrame&) {
                ++refused;
            }
        }
    }
    EXPECT_GT(refused, 100);
}

TEST(Answer, WithAStatusOfTheParentOrOtherMessagesIsRejected) {
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
    for (const Answer& answer :
         {failed(Status::limitTime), failed(Status::crashed), okWithError, errorWithout,
          okWithWarning, warnedWithout, droppedTooEarly, errorWithOutput}) {
        EXPECT_THROW(static_cast<void>(decoded(bytesOf(answer))), BadFrame);
    }
}

TEST(Answer, WithMoreWarningsThanARecordKeepsIsRejected) {
    Answer answer = fullAnswer();
    answer.outcome.warnings.assign(kMaxWarnings, {"id", "text"});
    answer.outcome.warningsDropped = 5;
    EXPECT_EQ(decoded(bytesOf(answer)).outcome.warnings.size(), 1000U);
    answer.outcome.warnings.push_back({"id", "text"});
    EXPECT_THROW(static_cast<void>(decoded(bytesOf(answer))), BadFrame);
}

TEST(Answer, WithMessagesTooLongForARecordIsRejected) {
    Answer answer = failed(Status::error);
    answer.outcome.error->text.assign(kMaxMessageBytes - 2, '\x1b');  // after "id"
    EXPECT_EQ(messageBytes(decoded(bytesOf(answer)).outcome), kMaxMessageBytes);
    answer.outcome.warnings.push_back({"", "x"});
    EXPECT_THROW(static_cast<void>(decoded(bytesOf(answer))), BadFrame);
}

TEST(Answer, WithMoreCellsOrFieldsThanSelectedIsRejected) {
    Answer answer = fullAnswer();
    answer.outcome.rendering.cells.emplace_back("one more");
    EXPECT_THROW(static_cast<void>(decoded(bytesOf(answer))), BadFrame);
    answer = fullAnswer();
    answer.outcome.rendering.fieldsSeen = {0, 1, 2};
    EXPECT_EQ(decoded(bytesOf(answer)).outcome.rendering, answer.outcome.rendering);
    answer.outcome.rendering.fieldsSeen.push_back(3);
    EXPECT_THROW(static_cast<void>(decoded(bytesOf(answer))), BadFrame);
}

// The number of cells, and the size of the first one, each larger than what follows.
TEST(Answer, WithWrongSizesOfCellsIsRejected) {
    Answer answer;
    answer.outcome.rendering.cells = {"1"};
    const std::string bytes = bytesOf(answer);
    const std::size_t number = bytes.size() - 25;  // then the size, one byte, and no fields
    for (const std::size_t at : {number, number + 8}) {
        for (const std::uint64_t value : {std::uint64_t{2}, std::uint64_t{10}, ~std::uint64_t{0}}) {
            std::string changed = bytes;
            std::memcpy(&changed[at], &value, sizeof value);
            EXPECT_THROW(static_cast<void>(decoded(changed)), BadFrame) << at << ' ' << value;
        }
    }
}

TEST(Answer, OfTheMaximalSizeFitsInAFrame) {
    constexpr std::size_t kOutput = 1000;
    Answer answer;
    answer.outcome.status = Status::warned;
    answer.outcome.warnings.assign(kMaxWarnings, {"", ""});
    answer.outcome.warnings.front().text.assign(kMaxMessageBytes, 'x');
    answer.outcome.rendering.cells.assign(100'001, "");
    answer.outcome.rendering.cells.front().assign(kOutput, '1');
    answer.outcome.rendering.fieldsSeen.resize(100'000);
    EXPECT_LE(bytesOf(answer).size(), maxAnswer(kOutput, 100'000));
}

}  // namespace
}  // namespace veltrace::cli
