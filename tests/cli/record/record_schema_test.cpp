#include "record/record_schema.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "record/outcome.h"

namespace veltrace::cli {
namespace {

nlohmann::json schema() {
    return nlohmann::json::parse(recordSchema());
}

TEST(RecordSchema, IsOfItsDraftAndEndsWithANewline) {
    EXPECT_EQ(schema()["$schema"], "https://json-schema.org/draft/2020-12/schema");
    EXPECT_TRUE(recordSchema().ends_with("}\n"));
}

TEST(RecordSchema, KnowsEveryStatus) {
    const nlohmann::json names = schema()["properties"]["status"]["enum"];
    ASSERT_EQ(names.size(), kStatusCount);
    for (std::size_t i = 0; i < kStatusCount; ++i) {
        EXPECT_EQ(names[i], nameOf(static_cast<Status>(i)));
    }
}

TEST(RecordSchema, KnowsHowManyWarningsARecordKeeps) {
    EXPECT_EQ(schema()["properties"]["warnings"]["maxItems"], kMostWarnings);
}

TEST(RecordSchema, DescribesEveryMember) {
    const nlohmann::json members = schema()["properties"];
    EXPECT_EQ(members.size(), 13U);
    for (const auto& [name, member] : members.items()) {
        EXPECT_FALSE(member["description"].get<std::string>().empty()) << name;
    }
}

}  // namespace
}  // namespace veltrace::cli
