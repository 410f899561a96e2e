#include "names/recorded_names.h"

#include <gtest/gtest.h>

#include "names/all_names.h"
#include "temporary_directory.h"

using namespace std::string_literals;

namespace veltrace::cli {
namespace {

RecordedNames namesIn(const std::string& content) {
    const test::TemporaryDirectory directory;
    return RecordedNames(directory.makeFile("out.ndjson", content));
}

/// The error of a file, after its name.
std::string errorOf(const std::string& content) {
    const test::TemporaryDirectory directory;
    const std::string path = directory.makeFile("out.ndjson", content);
    const std::string text = test::namesErrorOf([&] { RecordedNames{path}; });
    const std::string start = "cannot read the records of " + path + ": ";
    EXPECT_TRUE(text.starts_with(start)) << text;
    return text.substr(std::min(start.size(), text.size()));
}

std::string record(const std::string& path) {
    return R"({"v":1,"seq":0,"path":")" + path + R"(","status":"ok","info":[{"path":"inner"}]})" +
           "\n";
}

TEST(RecordedNames, AreThoseOfTheRecords) {
    const RecordedNames names = namesIn(record("a.tif") + record("d/b.tif"));
    EXPECT_TRUE(names.contains("a.tif"));
    EXPECT_TRUE(names.contains("d/b.tif"));
    EXPECT_FALSE(names.contains("b.tif"));
    EXPECT_FALSE(names.contains("inner"));
    EXPECT_FALSE(names.contains(""));
    EXPECT_FALSE(namesIn("").contains(""));
}

TEST(RecordedNames, AreComparedByTheirBytes) {
    const RecordedNames names = namesIn(
        record(R"(new\nline\u001b\"\\)") + record("caf\xc3\xa9") + record(R"(\ud83d\uddbc)") +
        R"({"v":1,"seq":1,"path_b64":"/y1hAA==","status":"ok"})" + "\n");
    EXPECT_TRUE(names.contains("new\nline\x1b\"\\"));
    EXPECT_TRUE(names.contains("caf\xc3\xa9"));
    EXPECT_TRUE(names.contains("\xf0\x9f\x96\xbc"));
    EXPECT_TRUE(names.contains("\xff-a\0"s));
}

TEST(RecordedNames, AreFoundAtAnyPlaceOfTheRecordExceptInsideValues) {
    const RecordedNames names =
        namesIn(R"({"x":{"path":"no"},"y":["path","no",{"path":"no"}],"path":"yes"})"
                "\n");
    EXPECT_TRUE(names.contains("yes"));
    EXPECT_FALSE(names.contains("no"));
}

TEST(RecordedNames, AnIncompleteLastLineIsIgnored) {
    const std::string whole = record("b");
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const RecordedNames names = namesIn(record("a") + whole.substr(0, size));
        EXPECT_TRUE(names.contains("a")) << size;
        EXPECT_FALSE(names.contains("b")) << size;
    }
    EXPECT_FALSE(namesIn("\xff garbage").contains("a"));
}

TEST(RecordedNames, AnInvalidLineIsAnErrorWithItsNumber) {
    for (const std::string& line :
         {""s, "x"s, "[]"s, R"([{"path":"a"}])"s, R"("path")"s, "{}"s, R"({"path":5})"s,
          R"({"path":["a"]})"s, R"({"path":null})"s, R"({"path":"a)"s, R"({"path_b64":"a"})"s,
          R"({"path":"\ud800"})"s, "{\"a\":1,\0\"path\":\"a\"}"s, R"({"v":1,path:"a"})"s}) {
        EXPECT_EQ(errorOf(record("a") + line + "\n" + record("b")), "line 2 is not a record")
            << line;
    }
    // A deep line does not overflow the stack.
    EXPECT_EQ(errorOf(R"({"info":)" + std::string(1000000, '[') + "\n"), "line 1 is not a record");
}

TEST(RecordedNames, LinesMayBeLongerThanAnyBlock) {
    const std::string filler(1000000, 'y');
    const RecordedNames names =
        namesIn(record(filler) + R"({"path":"b","info":")" + filler + "\"}\n" + R"({"info":")" +
                filler + R"(","path":"c"})" + "\n" + record("d"));
    EXPECT_TRUE(names.contains(filler));
    EXPECT_TRUE(names.contains("b"));
    EXPECT_TRUE(names.contains("c"));
    EXPECT_TRUE(names.contains("d"));
}

TEST(RecordedNames, AMissingFileIsAnError) {
    const test::TemporaryDirectory directory;
    EXPECT_EQ(
        test::namesErrorOf([&] { RecordedNames{directory.at("no\n")}; }),
        "cannot read the records of " + directory.path() + "/no\\n: No such file or directory");
    EXPECT_EQ(test::namesErrorOf([&] { RecordedNames{directory.path()}; }),
              "cannot read the records of " + directory.path() + ": Is a directory");
}

}  // namespace
}  // namespace veltrace::cli
