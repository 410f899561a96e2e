#include "messages.h"

#include <gtest/gtest.h>
#include <sstream>

namespace veltrace::cli {
namespace {

std::string messagesOf(std::string_view path, const Outcome& outcome) {
    std::ostringstream err;
    writeMessages(err, path, outcome);
    return err.str();
}

TEST(Messages, NameTheFileTheKindAndTheIdentifierOnALineEach) {
    Outcome outcome = failure(Status::error, "X:end", "Cannot go on.\n");
    outcome.warnings = {{"X:odd", "Odd value."}};
    EXPECT_EQ(messagesOf("a b.tif", outcome),
              "veltrace: a b.tif: warning: Odd value. [X:odd]\n"
              "veltrace: a b.tif: error: Cannot go on. [X:end]\n");
}

TEST(Messages, AreOneHarmlessLineEach) {
    Outcome outcome;
    outcome.warnings = {{"X:odd", "two\nlines \x1b]0;x\x07\n\n"}};
    EXPECT_EQ(messagesOf("new\nline\xff", outcome),
              "veltrace: new\\nline\\xff: warning: two\\nlines \\x1b]0;x\\x07\\n [X:odd]\n");
}

TEST(Messages, CountTheWarningsThatWereDropped) {
    EXPECT_EQ(messagesOf("a.tif", Outcome{}), "");
    Outcome outcome;
    outcome.warnings = {{"X:odd", "Odd value."}};
    outcome.warningsDropped = 234;
    EXPECT_EQ(messagesOf("a.tif", outcome),
              "veltrace: a.tif: warning: Odd value. [X:odd]\n"
              "veltrace: a.tif: 234 more warnings\n");
}

TEST(Messages, ThatAreAlreadyVisibleAreUnchanged) {
    std::ostringstream err;
    writeVisibleMessage(err, R"(cannot open a\\b\n)");
    EXPECT_EQ(err.str(), "veltrace: cannot open a\\\\b\\n\n");
}

}  // namespace
}  // namespace veltrace::cli
