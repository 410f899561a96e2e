#include "record/record_writer.h"

#include <gtest/gtest.h>

namespace veltrace::cli {
namespace {

/// The text of the records of a run.
std::string written(const std::vector<Record>& records, bool colour = false) {
    RenderOptions options;
    options.colour = colour;
    const auto writer = makeRecordWriter(options);
    std::string out;
    writer->begin(out);
    for (const Record& record : records) {
        writer->record(record, out);
    }
    writer->end(out);
    return out;
}

Record read(std::string path, std::string body, Status status = Status::ok) {
    Record record;
    record.path = std::move(path);
    record.outcome.status = status;
    record.outcome.rendering.body = std::move(body);
    return record;
}

Record failed(std::string path) {
    return {0, std::move(path), failure(Status::crashed, "X:end", "It ended.")};
}

TEST(TextRecordWriter, WritesTheNameAboveTheTextOfEachFileAndSeparatesFiles) {
    EXPECT_EQ(written({read("a.tif", "  Directory\n    Width  7\n"),
                       read("b.tif", "  Directory\n    Width  8\n", Status::warned)}),
              "a.tif\n"
              "  Directory\n"
              "    Width  7\n"
              "\n"
              "b.tif\n"
              "  Directory\n"
              "    Width  8\n");
}

TEST(TextRecordWriter, ReportsAFileWithoutDirectories) {
    EXPECT_EQ(written({read("a.tif", "")}), "a.tif\n  no directories\n");
    EXPECT_EQ(written({}), "");
}

TEST(TextRecordWriter, WritesNothingForAFileThatFailed) {
    EXPECT_EQ(written({failed("a.tif")}), "");
    EXPECT_EQ(written({failed("a.tif"), read("b.tif", "  x\n"), failed("c.tif"),
                       read("d.tif", "  y\n"), failed("e.tif")}),
              "b.tif\n  x\n\nd.tif\n  y\n");
}

TEST(TextRecordWriter, EscapesNamesAndMakesThemBoldWithColour) {
    EXPECT_EQ(written({read("new\nline\x1b\xff\u202e", "  x\n")}),
              "new\\nline\\x1b\\xff\\xe2\\x80\\xae\n  x\n");
    EXPECT_EQ(written({read("a.tif", "  x\n")}, true), "\x1b[1ma.tif\x1b[0m\n  x\n");
}

}  // namespace
}  // namespace veltrace::cli
