#include "record/csv_record.h"

#include <gtest/gtest.h>

#include "made_values.h"

namespace veltrace::cli {
namespace {

std::string header(const RenderOptions& options) {
    std::string out;
    CsvRecordWriter(options).begin(out);
    return out;
}

/// The row of a run with one selected field.
std::string row(const Record& record) {
    std::string out;
    CsvRecordWriter writer(selecting({"Make"}));
    writer.record(record, out);
    writer.end(out);
    return out;
}

Record read(std::string path, std::vector<std::string> cells) {
    Record record;
    record.path = std::move(path);
    record.outcome.rendering.cells = std::move(cells);
    return record;
}

TEST(CsvCell, IsQuotedOrMarkedWhereSheetsWouldMisreadIt) {
    EXPECT_EQ(csvCell(""), "");
    EXPECT_EQ(csvCell("47 22 11.9"), "47 22 11.9");
    EXPECT_EQ(csvCell("a=b;c+d\\x1b'"), "a=b;c+d\\x1b'");
    // Separators and outer blanks are quoted.
    EXPECT_EQ(csvCell("a,b"), "\"a,b\"");
    EXPECT_EQ(csvCell("say \"x\""), "\"say \"\"x\"\"\"");
    EXPECT_EQ(csvCell("a\nb"), "\"a\nb\"");
    EXPECT_EQ(csvCell("a\rb"), "\"a\rb\"");
    EXPECT_EQ(csvCell(" a"), "\" a\"");
    EXPECT_EQ(csvCell("a "), "\"a \"");
    // A formula gets an apostrophe, a number gets none.
    EXPECT_EQ(csvCell("=1+1"), "'=1+1");
    EXPECT_EQ(csvCell("+cmd"), "'+cmd");
    EXPECT_EQ(csvCell("-a"), "'-a");
    EXPECT_EQ(csvCell("-"), "'-");
    EXPECT_EQ(csvCell("-1 -2"), "'-1 -2");
    EXPECT_EQ(csvCell("@SUM(A1)"), "'@SUM(A1)");
    EXPECT_EQ(csvCell("=A1,\"B\""), "\"'=A1,\"\"B\"\"\"");
    EXPECT_EQ(csvCell("-12.5"), "-12.5");
    EXPECT_EQ(csvCell("-1e-07"), "-1e-07");
    EXPECT_EQ(csvCell("-Infinity"), "-Infinity");
}

TEST(CsvRecordWriter, TheFirstLineNamesTheColumns) {
    EXPECT_EQ(header(selecting({"Make", "GPSInfo.GPSLatitude"})),
              "path,status,error,warnings,directories,Make,GPSInfo.GPSLatitude\n");
    EXPECT_EQ(header(selecting({"a,b", "=\x1b"})),
              "path,status,error,warnings,directories,\"a,b\",'=\\x1b\n");
    // Without a selection they are the usual fields.
    EXPECT_EQ(header({}),
              "path,status,error,warnings,directories,Format,Width,Height,BitDepth,ColorType,"
              "Compression,DateTime,Make,Model,DigitalCamera.ExposureTime,DigitalCamera.FNumber,"
              "DigitalCamera.FocalLength,GPSInfo.GPSLatitude,GPSInfo.GPSLongitude\n");
}

TEST(CsvRecordWriter, WritesARowForAFile) {
    EXPECT_EQ(row(read("a.tif", {"2", "A;B"})), "a.tif,ok,,0,2,A;B\n");
    EXPECT_EQ(row(read("a.tif", {"1", "A, \"B\""})), "a.tif,ok,,0,1,\"A, \"\"B\"\"\"\n");
    // A name that begins with a hyphen gets an apostrophe.
    EXPECT_EQ(row(read("-rf", {"1", ""})), "'-rf,ok,,0,1,\n");
}

TEST(CsvRecordWriter, CountsAllWarnings) {
    Record record = read("a.tif", {"1", ""});
    record.outcome.status = Status::warned;
    record.outcome.warnings = {{"X:one", "One."}, {"X:two", "Two."}};
    record.outcome.warningsDropped = 40;
    EXPECT_EQ(row(record), "a.tif,warned,,42,1,\n");
}

TEST(CsvRecordWriter, WritesARowForAFileThatFailedAndEscapesIt) {
    EXPECT_EQ(row({0, "a.tif", failure(Status::limitMemory, "X:end", "It ended.")}),
              "a.tif,limit-memory,X:end,0,0,\n");
    EXPECT_EQ(row({0, "=new\nline,\x1b\xff", failure(Status::error, "X:\t\x9b", "It ended.")}),
              "\"'=new\\nline,\\x1b\\xff\",error,X:\\t\\x9b,0,0,\n");
}

}  // namespace
}  // namespace veltrace::cli
