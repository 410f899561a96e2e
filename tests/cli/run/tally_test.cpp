#include "run/tally.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

namespace veltrace::cli {
namespace {

using Seconds = std::chrono::duration<double>;

Tally mixedTally() {
    Tally tally;
    for (const Status status : {Status::ok, Status::ok, Status::ok, Status::warned, Status::error,
                                Status::limitTime, Status::crashed}) {
        tally.add(status);
    }
    return tally;
}

TEST(Tally, CountsAndListsFailures) {
    EXPECT_EQ(mixedTally().files(), 7U);
    EXPECT_EQ(mixedTally().failed(), 3U);
    EXPECT_EQ(Tally().files(), 0U);
    EXPECT_EQ(mixedTally().line(Seconds(2)),
              "7 files: 3 ok, 1 warned, 1 error, 1 limit-time, 1 crashed; 3.5 files/s");
}

TEST(Tally, OmitsFailuresThatDidNotOccur) {
    EXPECT_EQ(Tally().line(Seconds(0)), "0 files: 0 ok, 0 warned; 0.0 files/s");
    Tally tally;
    tally.add(Status::ok);
    EXPECT_EQ(tally.line(Seconds(0.5)), "1 file: 1 ok, 0 warned; 2.0 files/s");
}

TEST(Tally, IsJsonWithEveryStatus) {
    const std::string text = mixedTally().json(Seconds(2));
    EXPECT_EQ(text.back(), '\n');
    rapidjson::Document json;
    json.Parse(text.c_str());
    ASSERT_FALSE(json.HasParseError());
    EXPECT_EQ(json["files"].GetUint64(), 7U);
    EXPECT_EQ(json["ok"].GetUint64(), 3U);
    EXPECT_EQ(json["warned"].GetUint64(), 1U);
    EXPECT_EQ(json["error"].GetUint64(), 1U);
    EXPECT_EQ(json["limit-memory"].GetUint64(), 0U);
    EXPECT_EQ(json["limit-time"].GetUint64(), 1U);
    EXPECT_EQ(json["crashed"].GetUint64(), 1U);
    EXPECT_EQ(json["unreadable"].GetUint64(), 0U);
    EXPECT_EQ(json["seconds"].GetDouble(), 2.0);
    EXPECT_EQ(json["files_per_second"].GetDouble(), 3.5);
}

}  // namespace
}  // namespace veltrace::cli
