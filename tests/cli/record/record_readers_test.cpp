// Two independent JSON readers get the original values from a record.
#include <bit>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <rapidjson/document.h>

#include "record/nasty_records.h"

namespace veltrace::cli {
namespace {

Make row(const std::vector<double>& values) {
    return numbers(1, values.size(), values);
}

rapidjson::Document readByRapidJson(const std::string& line) {
    rapidjson::Document record;
    record.Parse<rapidjson::kParseValidateEncodingFlag | rapidjson::kParseFullPrecisionFlag>(
        line.c_str());
    EXPECT_FALSE(record.HasParseError()) << line;
    return record;
}

/// Bytes of a text whose characters are bytes.
std::string bytesOf(const std::string& utf8) {
    std::string bytes;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto lead = static_cast<unsigned char>(utf8[i]);
        bytes += lead < 0x80 ? utf8[i] : static_cast<char>((lead & 3) << 6 | (utf8[++i] & 0x3F));
    }
    return bytes;
}

TEST(RecordReaders, GetEveryBitOfEveryNumber) {
    const std::vector<double>& expected = nastyNumbers();
    const std::string line = lineWith("a.tif", row(expected));
    const auto record = nlohmann::json::parse(line);
    const auto other = readByRapidJson(line);
    ASSERT_EQ(record["info"][0]["X"].size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const auto bits = std::bit_cast<std::uint64_t>(expected[i]);
        const double number = record["info"][0]["X"][i].get<double>();
        EXPECT_EQ(std::bit_cast<std::uint64_t>(number), bits) << number;
        const double otherNumber =
            other["info"][0]["X"][static_cast<rapidjson::SizeType>(i)].GetDouble();
        EXPECT_EQ(std::bit_cast<std::uint64_t>(otherNumber), bits) << otherNumber;
    }
    EXPECT_TRUE(record["nonfinite"].empty());
}

TEST(RecordReaders, FindTheNumbersThatJsonCannotRepresent) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const auto record =
        nlohmann::json::parse(lineWith("a.tif", row({1, std::nan(""), kInfinity, -kInfinity})));
    const std::vector<std::string> names{"NaN", "Infinity", "-Infinity"};
    ASSERT_EQ(record["nonfinite"].size(), names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto& number = record["nonfinite"][i];
        EXPECT_EQ(number["is"], names[i]);
        EXPECT_EQ(number["at"], "/info/0/X/" + std::to_string(i + 1));
        EXPECT_TRUE(record.at(nlohmann::json::json_pointer(number["at"])).is_null());
    }
}

TEST(RecordReaders, GetEveryByteOfEveryText) {
    for (const std::string& expected : nastyTexts()) {
        const std::string line = lineWith("a.tif", characters(expected));
        const auto record = nlohmann::json::parse(line);
        const std::string text = record["info"][0]["X"];
        EXPECT_EQ(record["latin1"].empty() ? text : bytesOf(text), expected) << line;
        const auto other = readByRapidJson(line);
        const auto& otherText = other["info"][0]["X"];
        EXPECT_EQ(std::string(otherText.GetString(), otherText.GetStringLength()), text);
    }
}

TEST(RecordReaders, GetEveryName) {
    for (const std::string& expected : nastyTexts()) {
        const auto record = nlohmann::json::parse(lineWith(expected, number(1)));
        ASSERT_NE(record.contains("path"), record.contains("path_b64"));
        if (record.contains("path")) {
            EXPECT_EQ(record["path"], expected);
        }
    }
}

TEST(RecordReaders, FindALineInEachRecord) {
    for (const std::string& text : nastyTexts()) {
        const std::string line = lineWith(text, characters(text));
        EXPECT_EQ(line.find_first_of("\n\r\v\f"), line.size() - 1);
        for (const char* const separator : {"\u0085", "\u2028", "\u2029"}) {
            EXPECT_EQ(line.find(separator), std::string::npos);
        }
    }
}

}  // namespace
}  // namespace veltrace::cli
