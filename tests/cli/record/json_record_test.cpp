#include "record/json_record.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>

namespace veltrace::cli {
namespace {

RenderOptions as(Format format) {
    RenderOptions options;
    options.format = format;
    return options;
}

Record fileThatIsFine(std::uint64_t id, std::string path) {
    Record record{id, std::move(path), {}};
    record.outcome.elapsedMicroseconds = 112;
    record.outcome.rendering.body = R"([{"Width":7}])";
    return record;
}

std::string lineOf(const Record& record, const RenderOptions& options = as(Format::ndjson)) {
    std::string out;
    JsonRecordWriter(options).record(record, out);
    return out;
}

TEST(JsonRecord, HasItsMembersInTheirOrder) {
    EXPECT_EQ(lineOf(fileThatIsFine(3, "a.tif")),
              R"({"v":1,"seq":3,"path":"a.tif","status":"ok","error":null,"warnings":[],)"
              R"("warnings_dropped":0,"elapsed_us":112,"info":[{"Width":7}],)"
              R"("nonfinite":[],"latin1":[]})"
              "\n");
}

TEST(JsonRecord, KeepsWarningsAndCountsTheOthers) {
    Record record = fileThatIsFine(0, "w.tif");
    record.outcome.status = Status::warned;
    record.outcome.warnings = {{"X:first", "one\n"}, {"X:second", "two"}};
    record.outcome.warningsDropped = 17;
    EXPECT_EQ(lineOf(record),
              R"({"v":1,"seq":0,"path":"w.tif","status":"warned","error":null,)"
              R"("warnings":[{"id":"X:first","text":"one\n"},{"id":"X:second","text":"two"}],)"
              R"("warnings_dropped":17,"elapsed_us":112,"info":[{"Width":7}],)"
              R"("nonfinite":[],"latin1":[]})"
              "\n");
}

TEST(JsonRecord, AFailureHasAnErrorAndNoDirectories) {
    const Record record{18446744073709551615U, "e.tif",
                        failure(Status::limitTime, "X:late", "it \"broke\"")};
    EXPECT_EQ(lineOf(record),
              R"({"v":1,"seq":18446744073709551615,"path":"e.tif","status":"limit-time",)"
              R"("error":{"id":"X:late","text":"it \"broke\""},"warnings":[],)"
              R"("warnings_dropped":0,"elapsed_us":0,"info":[],"nonfinite":[],"latin1":[]})"
              "\n");
}

TEST(JsonRecord, PathsThatAreNotUtf8AreInBase64) {
    EXPECT_NE(lineOf(fileThatIsFine(0, "caf\u00e9\n")).find("\"path\":\"caf\u00e9\\n\",\"status\""),
              std::string::npos);
    const std::string line = lineOf(fileThatIsFine(0, "caf\xe9"));
    EXPECT_NE(line.find(R"("seq":0,"path_b64":"Y2Fm6Q==","status")"), std::string::npos);
    EXPECT_EQ(line.find(R"("path":)"), std::string::npos);
}

TEST(JsonRecord, ListsTextsOfMessagesBeforeThoseOfFields) {
    Record record = fileThatIsFine(0, "m.tif");
    record.outcome.status = Status::error;
    record.outcome.error = {"X:id", "caf\xe9"};
    record.outcome.warnings = {{"X:a", "fine"}, {"X:\xff", "\xfe"}};
    record.outcome.rendering.latin1 = R"("/info/0/Make","/info/0/Model")";
    const std::string line = lineOf(record);
    EXPECT_NE(line.find("\"error\":{\"id\":\"X:id\",\"text\":\"caf\u00e9\"},\"warnings\":["
                        "{\"id\":\"X:a\",\"text\":\"fine\"},"
                        "{\"id\":\"X:\u00ff\",\"text\":\"\u00fe\"}]"),
              std::string::npos)
        << line;
    EXPECT_NE(line.find(R"("latin1":["/error/text","/warnings/1/id","/warnings/1/text",)"
                        R"("/info/0/Make","/info/0/Model"]})"),
              std::string::npos)
        << line;
    record.outcome.rendering.latin1 = "";
    EXPECT_NE(lineOf(record).find(R"("/warnings/1/text"]})"), std::string::npos);
}

TEST(JsonRecord, ContainsTheListsOfTheRendering) {
    Record record = fileThatIsFine(0, "n.tif");
    record.outcome.rendering.nonfinite = R"({"at":"/info/0/X","is":"NaN"})";
    record.outcome.rendering.omitted = R"({"at":"/info/0/Y","size":[1,9]})";
    RenderOptions options = as(Format::ndjson);
    const std::string nonfinite = R"("nonfinite":[{"at":"/info/0/X","is":"NaN"}],"latin1":[])";
    EXPECT_TRUE(lineOf(record, options).ends_with(nonfinite + "}\n"));
    options.omitLargerThan = 8;
    EXPECT_TRUE(
        lineOf(record, options)
            .ends_with(nonfinite + R"(,"omitted":[{"at":"/info/0/Y","size":[1,9]}]})" + "\n"));
    EXPECT_TRUE(lineOf(fileThatIsFine(0, "o.tif"), options)
                    .ends_with(R"(,"omitted":[]})"
                               "\n"));
}

std::string written(Format format, const std::vector<Record>& records) {
    JsonRecordWriter writer(as(format));
    std::string out;
    writer.begin(out);
    for (const Record& record : records) {
        writer.record(record, out);
    }
    writer.end(out);
    return out;
}

TEST(JsonRecord, IsALineOfNdjsonOrOfTheArrayOfJson) {
    const std::vector<Record> records{fileThatIsFine(0, "a"), fileThatIsFine(1, "b")};
    std::string a = lineOf(records[0]);
    const std::string b = lineOf(records[1]);
    EXPECT_EQ(written(Format::ndjson, records), a + b);
    a.pop_back();
    EXPECT_EQ(written(Format::json, records), "[\n" + a + ",\n" + b + "]\n");
    EXPECT_EQ(written(Format::json, {}), "[\n]\n");
}

nlohmann::json schema() {
    return nlohmann::json::parse(recordSchema());
}

TEST(RecordSchema, DescribesEveryMember) {
    EXPECT_EQ(schema()["$schema"], "https://json-schema.org/draft/2020-12/schema");
    EXPECT_TRUE(recordSchema().ends_with("}\n"));
    EXPECT_EQ(schema()["properties"]["warnings"]["maxItems"], kMaxWarnings);
    const nlohmann::json members = schema()["properties"];
    EXPECT_EQ(members.size(), 13U);
    for (const auto& [name, member] : members.items()) {
        EXPECT_FALSE(member["description"].get<std::string>().empty()) << name;
    }
}

TEST(RecordSchema, ListsEveryStatus) {
    const nlohmann::json names = schema()["properties"]["status"]["enum"];
    ASSERT_EQ(names.size(), kStatusCount);
    for (std::size_t i = 0; i < kStatusCount; ++i) {
        EXPECT_EQ(names[i], nameOf(static_cast<Status>(i)));
    }
}

}  // namespace
}  // namespace veltrace::cli
