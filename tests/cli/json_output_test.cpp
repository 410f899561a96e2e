#include "json_output.h"

#include <gtest/gtest.h>
#include <sstream>

#include "made_values.h"

namespace veltrace::cli {
namespace {

class JsonOutputTest : public testing::Test {
protected:
    std::string text() const { return out_.str(); }

    std::ostringstream out_;
    JsonOutput output_{out_};
};

TEST_F(JsonOutputTest, WithoutFilesIsAnEmptyArray) {
    output_.begin();
    output_.end();
    EXPECT_EQ(text(), "[\n]\n");
}

TEST_F(JsonOutputTest, GivesEachFileALineOfItsOwn) {
    output_.begin();
    output_.file("a.tif", called([] {
                     return structures({{{"Width", qvCreateDoubleScalar(7)}}});
                 }));
    output_.file("b.tif", called([]() -> qvArray* { return nullptr; }));
    output_.end();
    EXPECT_EQ(text(),
              "[\n"
              R"({"path":"a.tif","status":"ok","error":null,"warnings":[],"info":[{"Width":7}]})"
              ",\n"
              R"({"path":"b.tif","status":"ok","error":null,"warnings":[],"info":[]})"
              "\n]\n");
}

TEST_F(JsonOutputTest, WarningsChangeTheStatusAndKeepTheirOrderAndText) {
    output_.file("w.tif", called([] {
                     qvxWarnMsgIdAndTxt("X:first", "one\n");
                     qvxWarnMsgIdAndTxt("X:second", "two");
                     return structures({{{"Width", qvCreateDoubleScalar(7)}}});
                 }));
    EXPECT_EQ(text(),
              "\n"
              R"({"path":"w.tif","status":"warned","error":null,)"
              R"("warnings":[{"id":"X:first","text":"one\n"},{"id":"X:second","text":"two"}],)"
              R"("info":[{"Width":7}]})");
}

TEST_F(JsonOutputTest, AnErrorComesWithoutDirectories) {
    output_.file("e.tif", called([]() -> qvArray* {
                     qvxWarnMsgIdAndTxt("X:first", "one");
                     qvxErrMsgIdAndTxt("X:end", "it \"broke\"");
                     return nullptr;
                 }));
    EXPECT_EQ(text(),
              "\n"
              R"({"path":"e.tif","status":"error",)"
              R"("error":{"id":"X:end","text":"it \"broke\""},)"
              R"("warnings":[{"id":"X:first","text":"one"}],"info":[]})");
}

TEST_F(JsonOutputTest, APathOfAnyBytesIsAString) {
    output_.file("\x1b\xff\n", called([]() -> qvArray* { return nullptr; }));
    EXPECT_EQ(text(),
              "\n"
              "{\"path\":\"\\u001B\u00ff\\n\","
              R"("status":"ok","error":null,"warnings":[],"info":[]})");
}

}  // namespace
}  // namespace veltrace::cli
