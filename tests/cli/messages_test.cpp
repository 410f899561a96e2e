#include "messages.h"

#include <gtest/gtest.h>
#include <sstream>

#include "made_values.h"

namespace veltrace::cli {
namespace {

TEST(Messages, NameTheFileTheKindAndTheIdentifierOnALineEach) {
    const auto result = called([]() -> qvArray* {
        qvxWarnMsgIdAndTxt("X:odd", "Odd value.");
        qvxErrMsgIdAndTxt("X:end", "Cannot go on.\n");
        return nullptr;
    });
    std::ostringstream err;
    writeMessages(err, "a b.tif", result);
    EXPECT_EQ(err.str(),
              "veltrace: a b.tif: warning: Odd value. [X:odd]\n"
              "veltrace: a b.tif: error: Cannot go on. [X:end]\n");
}

TEST(Messages, OneMessageStaysOneHarmlessLine) {
    const auto result = called([]() -> qvArray* {
        qvxWarnMsgIdAndTxt("X:odd", "two\nlines \x1b]0;x\x07\n\n");
        return nullptr;
    });
    std::ostringstream err;
    writeMessages(err, "new\nline\xff", result);
    EXPECT_EQ(err.str(),
              "veltrace: new\\nline\\xff: warning: two\\nlines \\x1b]0;x\\x07\\n [X:odd]\n");
}

TEST(Messages, AResultWithoutAnySaysNothing) {
    std::ostringstream err;
    writeMessages(err, "a.tif", called([]() -> qvArray* { return nullptr; }));
    EXPECT_EQ(err.str(), "");
}

}  // namespace
}  // namespace veltrace::cli
